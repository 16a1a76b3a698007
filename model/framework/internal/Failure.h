#pragma once

// Failure reporting shared by every source file of the model (not installed).

#include <cstdint>

#include "TesselLogging/VLogging.h"

namespace NODX220 {
namespace Internal {

// Logs "<condition>." at severity 0 in the group, when logging admits it, then throws
// VOdxException(condition, OE_ModelError).
[[noreturn]] void FailAssertion(uint32_t groupId, const char* condition);

// Logs "ODX ERR: Element is not of type <typeName>" at severity 0, when logging admits it.
void LogWrongType(uint32_t groupId, const char* typeName);

// Whether a line of this severity in this group would be written: logging enabled, the group
// in the mask, and the global level at or above the severity. Lines are built only then.
bool LogAdmits(NTesselSharedUtil::Logging::VLogLevel::VSeverityLevel severity, uint32_t groupId);

// Logs the text at the severity, when logging admits it.
void LogLine(NTesselSharedUtil::Logging::VLogLevel::VSeverityLevel severity, uint32_t groupId,
             const char* text);

} // namespace Internal

namespace {
// Each source file registers the model's log group while the library loads.
const uint32_t kLogGroupId =
    NTesselSharedUtil::Logging::VLogging::GetInstance().GetOrCreateGroupId("GroupQuillon");
} // namespace

} // namespace NODX220
