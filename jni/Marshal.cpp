// The parts of the Java binding that are not uniform: Java text to code page 1251, the String and
// certificate-list marshallers, and the two wrappers whose shape no parameter kind gives
// (GetVersionInfo fills a StringBuffer, GetLastFileErrorAsn answers with a String).
#include "jni/Marshal.h"

namespace tvjni {

std::string JavaTextToCp1251(const char* in) {
    // Two- and three-octet sequences that the formula below would not map as callers expect.
    static const struct {
        unsigned char a, b, c, to;
    } kSpecial[] = {
        {0xD0, 0x84, 0, 0xAA}, {0xD0, 0x87, 0, 0xAF}, {0xD0, 0x8E, 0, 0xA1}, {0xD1, 0x94, 0, 0xBA},
        {0xD1, 0x97, 0, 0xBF}, {0xD1, 0x9E, 0, 0xA2}, {0xC2, 0xB0, 0, 0xB0}, {0xC2, 0xB7, 0, 0xB7},
        {0xC2, 0xA4, 0, 0xA4}, {0xE2, 0x80, 0xA2, 0x95}, {0xE2, 0x84, 0x96, 0xB9},
    };
    std::string out;
    const auto* p = reinterpret_cast<const unsigned char*>(in);
    while (*p) {
        if (*p < 0x80) {
            out += static_cast<char>(*p++);
            continue;
        }
        bool mapped = false;
        for (const auto& s : kSpecial) {
            const size_t n = s.c ? 3 : 2;
            if (p[0] == s.a && p[1] == s.b && (n == 2 || p[2] == s.c)) {
                out += static_cast<char>(s.to);
                p += n;
                mapped = true;
                break;
            }
        }
        if (mapped) continue;
        if ((p[0] & 0xE0) == 0xC0 && p[1]) {
            const unsigned code = (p[0] & 3u) * 64 + (p[1] & 63u) + ((p[0] >> 2) & 5u) * 256;
            out += static_cast<char>(code == 1025 ? 0xA8 : code == 1105 ? 0xB8 : (code - 848) & 0xFF);
            p += 2;
            continue;
        }
        ++p;  // other multi-octet sequences and stray continuation octets are dropped
    }
    return out;
}

// The Part's conversion works in place on GetStringUTFChars' buffer; the result is the same when it
// is written into a string of our own, and the virtual machine's buffer stays as it gave it.
JavaText::JavaText(JNIEnv* env, jstring text) : env_(env), text_(text) {
    if (!text) return;
    utf_ = env->GetStringUTFChars(text, nullptr);
    if (utf_) converted_ = JavaTextToCp1251(utf_);
}

JavaText::~JavaText() {
    if (utf_) env_->ReleaseStringUTFChars(text_, utf_);
}

CertList::CertList(JNIEnv* env, jbyteArray certificate, jintArray length, jint count)
    : bytes_(env, certificate),
      length_(env, length),
      certificate_(reinterpret_cast<const uint8_t*>(bytes_.data())),
      count_(static_cast<uint32_t>(count)) {
    if (ok()) length_.data()[0] = static_cast<jint>(bytes_.length());
}

}  // namespace tvjni

using namespace tvjni;

// The banner through a StringBuffer: its old contents replaced by the text.
extern "C" JNIEXPORT jint JNICALL Java_velmorant_x509_tarvelon_Tarvelon_dll_1GetVersionInfo(JNIEnv* env, jclass,
                                                                                          jobject text) {
    char banner[100] = "";
    uint32_t length = sizeof banner;
    const uint32_t rc = GetVersionInfo(banner, &length);
    if (!text) return static_cast<jint>(rc);
    jstring value = env->NewStringUTF(banner);
    jclass type = env->GetObjectClass(text);
    env->CallVoidMethod(text, env->GetMethodID(type, "setLength", "(I)V"), 0);
    env->CallObjectMethod(text, env->GetMethodID(type, "append", "(Ljava/lang/String;)Ljava/lang/StringBuffer;"), value);
    env->DeleteLocalRef(value);
    env->DeleteLocalRef(type);
    return static_cast<jint>(rc);
}

// The module of the last failure as a String (null before any), its line in line[0] when given.
extern "C" JNIEXPORT jstring JNICALL Java_velmorant_x509_tarvelon_Tarvelon_dll_1GetLastFileErrorAsn(JNIEnv* env, jclass,
                                                                                                   jintArray line) {
    Ints number(env, line);
    uint32_t* at = number.present() && number.length() >= 1 ? reinterpret_cast<uint32_t*>(number.data()) : nullptr;
    const char* module = GetLastFileErrorAsn(at);
    return module ? env->NewStringUTF(module) : nullptr;
}
