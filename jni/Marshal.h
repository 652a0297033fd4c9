// The marshallers of the Java binding: one per parameter kind (jni/gen_jni.cpp says how each kind is
// recognised). A generated wrapper makes one marshaller per Java argument group, returns 49 without
// calling when any of them is not ok(), passes argN() to the exported function, calls after() on
// each to store results, and the destructors release every array with mode 0 (copy back and free)
// on both paths. A null array is neither obtained nor released.
#pragma once

#include <jni.h>

#include <cstdint>
#include <string>

#include "tarvelon/tarvelon.h"

namespace tvjni {

// The only code the binding adds: an out array missing or too short, or an input array shorter
// than its stated length.
constexpr jint kRejected = 49;

// Java text (modified UTF-8) to code page 1251: bytes below 0x80 kept, the Ukrainian and
// Belarusian letters and a few signs by table, other two-octet letters by the Cyrillic formula,
// everything else dropped. Never longer than the input.
std::string JavaTextToCp1251(const char* modifiedUtf8);

// The elements of a Java array for the time of one call.
template <typename Array, typename Element>
class Elements {
public:
    Elements(JNIEnv* env, Array array) : env_(env), array_(array) {
        if (!array) return;
        length_ = env->GetArrayLength(array);
        elements_ = Get(env, array);
    }
    ~Elements() {
        if (array_ && elements_) Release(env_, array_, elements_);
    }
    Elements(const Elements&) = delete;
    Elements& operator=(const Elements&) = delete;

    bool present() const { return array_ != nullptr && elements_ != nullptr; }
    uint32_t length() const { return static_cast<uint32_t>(length_); }
    Element* data() const { return elements_; }

private:
    static jbyte* Get(JNIEnv* env, jbyteArray a) { return env->GetByteArrayElements(a, nullptr); }
    static jint* Get(JNIEnv* env, jintArray a) { return env->GetIntArrayElements(a, nullptr); }
    static jlong* Get(JNIEnv* env, jlongArray a) { return env->GetLongArrayElements(a, nullptr); }
    static void Release(JNIEnv* env, jbyteArray a, jbyte* e) { env->ReleaseByteArrayElements(a, e, 0); }
    static void Release(JNIEnv* env, jintArray a, jint* e) { env->ReleaseIntArrayElements(a, e, 0); }
    static void Release(JNIEnv* env, jlongArray a, jlong* e) { env->ReleaseLongArrayElements(a, e, 0); }

    JNIEnv* env_;
    Array array_;
    jsize length_ = 0;
    Element* elements_ = nullptr;
};

using Bytes = Elements<jbyteArray, jbyte>;
using Ints = Elements<jintArray, jint>;
using Longs = Elements<jlongArray, jlong>;

// byte[] and int: input octets with a stated length, which the array must hold.
class InBytes {
public:
    InBytes(JNIEnv* env, jbyteArray bytes, jint length) : bytes_(env, bytes), length_(static_cast<uint32_t>(length)) {}
    bool ok() const { return !bytes_.present() || length_ <= bytes_.length(); }
    const uint8_t* arg0() const { return reinterpret_cast<const uint8_t*>(bytes_.data()); }
    uint32_t arg1() const { return length_; }
    void after() {}

private:
    Bytes bytes_;
    uint32_t length_;
};

// byte[]: input octets whose length the function reads from them (a packed OID).
class InPacked {
public:
    InPacked(JNIEnv* env, jbyteArray bytes) : bytes_(env, bytes) {}
    bool ok() const { return true; }
    const uint8_t* arg0() const { return reinterpret_cast<const uint8_t*>(bytes_.data()); }
    void after() {}

private:
    Bytes bytes_;
};

// byte[] and int[]: an output buffer whose room is the array's length; int[0] receives the length
// the function wrote back (the needed size on 49).
template <typename Char>
class OutBufferOf {
public:
    OutBufferOf(JNIEnv* env, jbyteArray buffer, jintArray length)
        : buffer_(env, buffer), length_(env, length), room_(buffer_.length()) {}
    bool ok() const { return length_.present() && length_.length() >= 1; }
    Char* arg0() const { return reinterpret_cast<Char*>(buffer_.data()); }
    uint32_t* arg1() { return &room_; }
    void after() { length_.data()[0] = static_cast<jint>(room_); }

private:
    Bytes buffer_;
    Ints length_;
    uint32_t room_;
};
using OutBuffer = OutBufferOf<uint8_t>;
using OutText = OutBufferOf<char>;

// byte[]: a fixed number of octets written by the function (one for a class, form or flag).
template <uint32_t N>
class OutFixed {
public:
    OutFixed(JNIEnv* env, jbyteArray bytes) : bytes_(env, bytes) {}
    bool ok() const { return bytes_.present() && bytes_.length() >= N; }
    uint8_t* arg0() const { return reinterpret_cast<uint8_t*>(bytes_.data()); }
    void after() {}

private:
    Bytes bytes_;
};

// int[]: element 0 is the 32-bit value the function reads or writes.
template <typename T>
class OutInt {
public:
    OutInt(JNIEnv* env, jintArray value) : value_(env, value) {}
    bool ok() const { return value_.present() && value_.length() >= 1; }
    T* arg0() const { return reinterpret_cast<T*>(value_.data()); }
    void after() {}

private:
    Ints value_;
};

// int[]: a time or accuracy record, its uint32_t fields in record order; null passes a null record.
template <typename R>
class Record {
    static constexpr uint32_t kFields = sizeof(R) / sizeof(uint32_t);
    static_assert(sizeof(R) == kFields * sizeof(jint), "a record of 32-bit fields");

public:
    Record(JNIEnv* env, jintArray fields) : fields_(env, fields) {}
    bool ok() const { return !fields_.present() || fields_.length() >= kFields; }
    R* arg0() const { return reinterpret_cast<R*>(fields_.data()); }
    void after() {}

private:
    Ints fields_;
};

// long[]: element 0 receives the handle the function makes (and holds the one it may read).
template <typename T>
class HandleOut {
public:
    HandleOut(JNIEnv* env, jlongArray handle) : handle_(env, handle) {
        if (ok()) value_ = reinterpret_cast<T*>(handle_.data()[0]);
    }
    bool ok() const { return handle_.present() && handle_.length() >= 1; }
    T** arg0() { return &value_; }
    void after() { handle_.data()[0] = reinterpret_cast<jlong>(value_); }

private:
    Longs handle_;
    T* value_ = nullptr;
};

// String: zero-terminated code page 1251 text (a path, a dotted OID, a label); null passes null.
class JavaText {
public:
    JavaText(JNIEnv* env, jstring text);
    ~JavaText();
    JavaText(const JavaText&) = delete;
    JavaText& operator=(const JavaText&) = delete;
    bool ok() const { return true; }
    const char* arg0() const { return utf_ ? converted_.c_str() : nullptr; }
    void after() {}

private:
    JNIEnv* env_;
    jstring text_;
    const char* utf_ = nullptr;
    std::string converted_;
};

// byte[], int[] and int: the further certificates of CreateCmsFileSignature2, of which Java can give
// one: the whole byte[] is that certificate, int[0] receives its length, the count passes as it is.
class CertList {
public:
    CertList(JNIEnv* env, jbyteArray certificate, jintArray length, jint count);
    bool ok() const { return length_.present() && length_.length() >= 1; }
    const uint8_t* const* arg0() const { return &certificate_; }
    const uint32_t* arg1() const { return reinterpret_cast<const uint32_t*>(length_.data()); }
    uint32_t arg2() const { return count_; }
    void after() {}

private:
    Bytes bytes_;
    Ints length_;
    const uint8_t* certificate_;
    uint32_t count_;
};

}  // namespace tvjni
