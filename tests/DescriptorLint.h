// Checks a descriptor tree for the mistakes a table can make and the compiler cannot see:
// EXPLICIT without a tag, lists without exactly one element, slot sizes, constructed bits,
// defaults on kinds that cannot be compared, and ambiguity (CHOICE alternatives or an OPTIONAL
// component and its successor that one element could match).
#pragma once

#include <set>
#include <string>
#include <vector>

#include "tarvelon/engine/Descriptor.h"

namespace tvtest {

std::vector<std::string> LintDescriptor(const Asn1Descriptor* root, const std::string& name);

}  // namespace tvtest
