#pragma once

// XML forms that ODX allows but the model has no place for: the reader reports each with its
// place and this reason, and skips it.

namespace NODX220Xml {
namespace Internal {

// The reason why an element `name` inside `parent` (or an attribute, named "@NAME") is not
// read; null where there is no known reason (the element is simply misplaced).
const char* UnheldReason(const char* parent, const char* name);

} // namespace Internal
} // namespace NODX220Xml
