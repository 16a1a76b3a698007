#pragma once

namespace NODX220 {

// 0 asks for short-name predicates where a collection step can give one; any other value
// asks for positions.
enum VXPathType {
    eXPathShortName = 0,
    eXPathPosition = 1
};

} // namespace NODX220
