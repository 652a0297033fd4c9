#include "DescriptorLint.h"

#include <tuple>

namespace tvtest {
namespace {

using tv::IsExplicit;
using tv::IsOptional;

// What the first identifier octet of an element of this descriptor can be; empty for "anything".
struct Start {
    uint8_t tagClass;
    uint32_t tag;
    uint8_t constructed;
    bool operator<(const Start& o) const {
        return std::tie(tagClass, tag, constructed) < std::tie(o.tagClass, o.tag, o.constructed);
    }
};

std::set<Start> Starts(const Asn1Descriptor* d, bool& any) {
    if (IsExplicit(*d)) return {{d->tagClass, static_cast<uint32_t>(d->tag), ASN1_CONSTRUCTED_FORM}};
    if (d->typeCode == ASN1_ANY && d->tag == -1) {
        any = true;
        return {};
    }
    if (d->typeCode == ASN1_CHOICE) {
        std::set<Start> all;
        for (uint32_t i = 0; i < d->componentCount; ++i) {
            auto s = Starts(d->components[i], any);
            all.insert(s.begin(), s.end());
        }
        return all;
    }
    uint32_t tag = d->tag == -1 ? tv::UniversalTag(*d) : static_cast<uint32_t>(d->tag);
    return {{d->tagClass, tag, d->constructed}};
}

bool Overlap(const std::set<Start>& a, const std::set<Start>& b) {
    for (const auto& s : a)
        if (b.count(s)) return true;
    return false;
}

class Linter {
public:
    std::vector<std::string> problems;

    void Walk(const Asn1Descriptor* d, const std::string& path) {
        if (!visited_.insert(d).second) return;  // shared and recursive descriptors once
        auto problem = [&](const std::string& what) { problems.push_back(path + ": " + what); };
        const uint8_t code = d->typeCode;
        if (IsExplicit(*d) && d->tag == -1) problem("EXPLICIT without a tag");
        if (d->tag != -1 && d->tagClass == ASN1_CLASS_UNIVERSAL) problem("a tag with the universal class");
        const bool structured = code == ASN1_SEQUENCE || code == ASN1_SET || code == ASN1_SEQUENCE_OF ||
                                code == ASN1_SET_OF || code == ASN1_CHOICE;
        // An implicitly tagged ANY carries the form of the element it stands for.
        if (code != ASN1_ANY && structured != (d->constructed == ASN1_CONSTRUCTED_FORM))
            problem("constructed bit does not fit the kind");
        if ((code == ASN1_SEQUENCE_OF || code == ASN1_SET_OF) && (d->componentCount != 1 || !d->components[0]))
            problem("list without exactly one element descriptor");
        if ((code == ASN1_SEQUENCE || code == ASN1_SET) && d->valueSize != d->componentCount * sizeof(void*))
            problem("value size is not one slot per component");
        if (d->defaultValue) {
            if (!IsOptional(*d)) problem("default on a component that is not OPTIONAL");
            if (code == ASN1_NULL || code == ASN1_ENUMERATED || code == ASN1_CHOICE || code == ASN1_ANY)
                problem("default on a kind that cannot be compared");
        }
        if (code == ASN1_CHOICE) {
            if (d->tag != -1 && !IsExplicit(*d)) problem("a tagged CHOICE must be EXPLICIT");
            std::set<Start> seen;
            for (uint32_t i = 0; i < d->componentCount; ++i) {
                bool any = false;
                auto s = Starts(d->components[i], any);
                if (any) problem("CHOICE alternative " + std::to_string(i) + " is an untagged ANY");
                if (Overlap(seen, s)) problem("CHOICE alternative " + std::to_string(i) + " shares a tag");
                seen.insert(s.begin(), s.end());
            }
        }
        if (code == ASN1_SEQUENCE || code == ASN1_SET) {
            // Components after an OPTIONAL one must not start like it, or the decoder takes one for
            // the other.
            std::set<Start> pending;
            bool pendingAny = false;
            for (uint32_t i = 0; i < d->componentCount; ++i) {
                bool any = false;
                auto s = Starts(d->components[i], any);
                if ((pendingAny || any) && !pending.empty()) problem("component " + std::to_string(i) + " after OPTIONAL is ambiguous");
                else if (Overlap(pending, s)) problem("component " + std::to_string(i) + " starts like an OPTIONAL one before it");
                if (IsOptional(*d->components[i])) {
                    pending.insert(s.begin(), s.end());
                    pendingAny = pendingAny || any;
                } else {
                    pending.clear();
                    pendingAny = false;
                }
            }
        }
        for (uint32_t i = 0; i < d->componentCount && d->components; ++i)
            Walk(d->components[i], path + "/" + std::to_string(i));
    }

private:
    std::set<const Asn1Descriptor*> visited_;
};

}  // namespace

std::vector<std::string> LintDescriptor(const Asn1Descriptor* root, const std::string& name) {
    Linter l;
    l.Walk(root, name);
    return l.problems;
}

}  // namespace tvtest
