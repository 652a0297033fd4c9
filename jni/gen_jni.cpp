// Generates the Java binding from the public headers: one JNI wrapper per exported function
// (tarvelon_jni.cpp, compiled into libtarvelon.so) and the class with its `native` declarations
// (velmorant/x509/tarvelon/Tarvelon.java).
//
//   gen_jni OUT_CPP OUT_JAVA HEADER...
//
// Every exported function is one `TV_API <return> <Name>(<parameters>);` line. Each parameter, or
// run of parameters, is recognised by its C type and its role name, in this order:
//
//   kind        C parameters                                   Java            marshaller
//   certList    const uint8_t* const* X, const uint32_t* XLens,  byte[], int[],  CertList
//               uint32_t count                                   int
//   outBuffer   uint8_t* X or char* X, then uint32_t* XLen       byte[], int[]   OutBuffer
//   inBytes     const uint8_t* X, then uint32_t XLen             byte[], int     InBytes
//   inPacked    const uint8_t* X alone (a packed OID: its       byte[]          InPacked
//               length is in its first octet)
//   outFixed    uint8_t* X alone: one octet (class, form, tag,  byte[]          OutFixed<N>
//               flag, mode, unused bits), four for outInt32,
//               twenty for outDigest
//   outInt      uint32_t* or int32_t* alone                     int[]           OutInt
//   record      [const] LibraryTime*, LibraryPreciseTime*,       int[]           Record<T>
//               Accuracy* (the fields in record order)
//   text        const char*                                      String          JavaText
//   int         uint32_t, int32_t, uint16_t, uint8_t, int        int             cast
//   long        uint64_t                                         long            cast
//   handleOut   T** (a handle the function makes)                long[]          HandleOut<T>
//   handle      any other T* and Asn1ListCompare                 long            cast
//
// Results: uint32_t and int32_t come back as the Java int; a pointer as long (0 for null). Two
// functions are shaped by hand in the wrapper: GetVersionInfo fills a StringBuffer, and
// GetLastFileErrorAsn returns its module name as a String. A parameter that fits none of the kinds
// stops the build with a message naming the function and the parameter.
#include <cstdio>
#include <fstream>
#include <iostream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace {

struct Param {
    std::string type, name;
};

struct Kind {
    std::string marshaller;             // C++ marshaller type, empty for a plain cast
    std::vector<std::string> jniTypes;  // one per Java argument
    std::vector<std::string> javaTypes;
    size_t consumed = 1;                // C parameters taken
};

std::string Trim(std::string s) {
    const auto b = s.find_first_not_of(' '), e = s.find_last_not_of(' ');
    return b == std::string::npos ? "" : s.substr(b, e - b + 1);
}

std::vector<Param> Params(const std::string& list) {
    std::vector<Param> out;
    if (Trim(list).empty() || Trim(list) == "void") return out;
    std::stringstream in(list);
    for (std::string p; std::getline(in, p, ',');) {
        p = Trim(p);
        const auto cut = p.find_last_of(" *");
        out.push_back({Trim(p.substr(0, cut + 1)), p.substr(cut + 1)});
    }
    return out;
}

bool Fail(const std::string& function, const Param& p) {
    std::cerr << "gen_jni: " << function << ": parameter '" << p.type << " " << p.name
              << "' is of no kind the Java binding knows; teach gen_jni.cpp its kind\n";
    return false;
}

bool Classify(const std::string& function, const std::vector<Param>& ps, size_t i, Kind& k) {
    const Param& p = ps[i];
    const Param* next = i + 1 < ps.size() ? &ps[i + 1] : nullptr;
    const std::string& t = p.type;
    static const std::regex record(R"((const )?(LibraryTime|LibraryPreciseTime|Accuracy)\*)");
    std::smatch m;
    if (t == "const uint8_t* const*") {
        if (i + 2 >= ps.size() || ps[i + 1].type != "const uint32_t*" || ps[i + 2].type != "uint32_t")
            return Fail(function, p);
        k = {"CertList", {"jbyteArray", "jintArray", "jint"}, {"byte[]", "int[]", "int"}, 3};
    } else if ((t == "uint8_t*" || t == "char*") && next && next->type == "uint32_t*" && next->name == p.name + "Len") {
        k = {t == "char*" ? "OutText" : "OutBuffer", {"jbyteArray", "jintArray"}, {"byte[]", "int[]"}, 2};
    } else if (t == "const uint8_t*" && next && next->type == "uint32_t" && next->name == p.name + "Len") {
        k = {"InBytes", {"jbyteArray", "jint"}, {"byte[]", "int"}, 2};
    } else if (t == "const uint8_t*") {
        k = {"InPacked", {"jbyteArray"}, {"byte[]"}};
    } else if (t == "uint8_t*") {
        const int size = p.name == "outInt32" ? 4 : p.name == "outDigest" ? 20 : 1;
        k = {"OutFixed<" + std::to_string(size) + ">", {"jbyteArray"}, {"byte[]"}};
    } else if (t == "uint32_t*" || t == "int32_t*") {
        k = {t == "uint32_t*" ? "OutInt<uint32_t>" : "OutInt<int32_t>", {"jintArray"}, {"int[]"}};
    } else if (std::regex_match(t, m, record)) {
        k = {"Record<" + m[2].str() + ">", {"jintArray"}, {"int[]"}};
    } else if (t == "const char*") {
        k = {"JavaText", {"jstring"}, {"String"}};
    } else if (t == "uint32_t" || t == "int32_t" || t == "uint16_t" || t == "uint8_t" || t == "int") {
        k = {"", {"jint"}, {"int"}};
    } else if (t == "uint64_t") {
        k = {"", {"jlong"}, {"long"}};
    } else if (t.size() > 2 && t.compare(t.size() - 2, 2, "**") == 0) {
        k = {"HandleOut<" + Trim(t.substr(0, t.size() - 2)) + ">", {"jlongArray"}, {"long[]"}};
    } else if (t.back() == '*' || t == "Asn1ListCompare") {
        k = {"", {"jlong"}, {"long"}};
    } else {
        return Fail(function, p);
    }
    return true;
}

// JNI mangling of a method name: '_' becomes "_1".
std::string Mangled(const std::string& name) {
    std::string out;
    for (char c : name) out += c == '_' ? std::string("_1") : std::string(1, c);
    return out;
}

struct Function {
    std::string returnType, name;
    std::vector<Param> params;
};

bool Emit(const Function& f, std::ostream& cpp, std::ostream& java) {
    const bool pointer = f.returnType.back() == '*' && f.name != "GetLastFileErrorAsn";
    const std::string symbol = "Java_velmorant_x509_tarvelon_Tarvelon_dll_1" + Mangled(f.name);
    if (f.name == "GetVersionInfo" || f.name == "GetLastFileErrorAsn") {  // shaped by hand (Marshal.cpp)
        java << (f.name == "GetVersionInfo" ? "    public static native int dll_GetVersionInfo(StringBuffer text);\n"
                                            : "    public static native String dll_GetLastFileErrorAsn(int[] line);\n");
        return true;
    }
    std::vector<std::string> jniArgs, javaArgs, locals, callArgs, guards;
    for (size_t i = 0; i < f.params.size();) {
        Kind k;
        if (!Classify(f.name, f.params, i, k)) return false;
        const Param& p = f.params[i];
        std::vector<std::string> names;
        for (size_t j = 0; j < k.jniTypes.size(); ++j) {
            const std::string n = "a" + std::to_string(i) + "_" + std::to_string(j);
            names.push_back(n);
            jniArgs.push_back(k.jniTypes[j] + " " + n);
            javaArgs.push_back(k.javaTypes[j] + " " + (j < k.consumed ? f.params[i + j].name : p.name + std::to_string(j)));
        }
        if (k.marshaller.empty()) {
            callArgs.push_back(p.type == "Asn1ListCompare" || p.type.back() == '*'
                                   ? "reinterpret_cast<" + p.type + ">(" + names[0] + ")"
                                   : "static_cast<" + p.type + ">(" + names[0] + ")");
        } else {
            const std::string local = "m" + std::to_string(i);
            std::string init = local + "(env";
            for (const std::string& n : names) init += ", " + n;
            locals.push_back(k.marshaller + " " + init + ");");
            guards.push_back(local);
            for (size_t j = 0; j < k.consumed; ++j) callArgs.push_back(local + ".arg" + std::to_string(j) + "()");
        }
        i += k.consumed;
    }
    const std::string jniReturn = pointer ? "jlong" : "jint";
    cpp << "extern \"C\" JNIEXPORT " << jniReturn << " JNICALL " << symbol << "(JNIEnv*" << (guards.empty() ? "" : " env")
        << ", jclass";
    for (const std::string& a : jniArgs) cpp << ", " << a;
    cpp << ") {\n";
    for (const std::string& l : locals) cpp << "    " << l << "\n";
    if (!guards.empty()) {
        cpp << "    if (!(";
        for (size_t g = 0; g < guards.size(); ++g) cpp << (g ? " && " : "") << guards[g] << ".ok()";
        cpp << ")) return " << (pointer ? "0" : "kRejected") << ";\n";
    }
    cpp << "    const auto result = " << f.name << "(";
    for (size_t a = 0; a < callArgs.size(); ++a) cpp << (a ? ", " : "") << callArgs[a];
    cpp << ");\n";
    for (const std::string& g : guards) cpp << "    " << g << ".after();\n";
    cpp << "    return " << (pointer ? "reinterpret_cast<jlong>(result)" : "static_cast<jint>(result)") << ";\n}\n\n";
    java << "    public static native " << (pointer ? "long" : "int") << " dll_" << f.name << "(";
    for (size_t a = 0; a < javaArgs.size(); ++a) java << (a ? ", " : "") << javaArgs[a];
    java << ");\n";
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 4) {
        std::cerr << "usage: gen_jni OUT_CPP OUT_JAVA HEADER...\n";
        return 2;
    }
    static const std::regex declaration(R"(^TV_API (.+[ *])(\w+)\((.*)\);.*$)");
    std::vector<Function> functions;
    for (int h = 3; h < argc; ++h) {
        std::ifstream in(argv[h]);
        if (!in) {
            std::cerr << "gen_jni: cannot read " << argv[h] << "\n";
            return 1;
        }
        for (std::string line; std::getline(in, line);) {
            std::smatch m;
            if (line.rfind("TV_API ", 0) != 0) continue;
            if (!std::regex_match(line, m, declaration)) {
                std::cerr << "gen_jni: " << argv[h] << ": not one declaration on one line: " << line << "\n";
                return 1;
            }
            functions.push_back({Trim(m[1].str()), m[2].str(), Params(m[3].str())});
        }
    }
    std::ostringstream cpp, java;
    cpp << "// Generated by jni/gen_jni.cpp from the public headers; do not edit.\n"
           "#include \"jni/Marshal.h\"\n\nusing namespace tvjni;\n\n";
    java << "// Generated by jni/gen_jni.cpp from the public headers; do not edit.\n"
            "package velmorant.x509.tarvelon;\n\n"
            "/** One native method per exported function of libtarvelon.so; see the C headers for each. */\n"
            "public final class Tarvelon {\n"
            "    private Tarvelon() {}\n\n"
            "    static {\n"
            "        Loader.load();\n"
            "    }\n\n";
    for (const Function& f : functions)
        if (!Emit(f, cpp, java)) return 1;
    java << "}\n";
    std::ofstream(argv[1]) << cpp.str();
    std::ofstream(argv[2]) << java.str();
    std::printf("gen_jni: %zu functions\n", functions.size());
    return 0;
}
