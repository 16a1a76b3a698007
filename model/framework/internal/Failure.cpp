#include "framework/internal/Failure.h"

#include <string>

#include "framework/VOdxException.h"

namespace NODX220 {
namespace Internal {

using NTesselSharedUtil::Logging::VLogging;
using NTesselSharedUtil::Logging::VLogLevel;

bool LogAdmits(VLogLevel::VSeverityLevel severity, uint32_t groupId)
{
    const VLogging& logging = VLogging::GetInstance();
    return logging.IsEnabled() && (logging.GetGlobalLogGroupMask() & groupId) != 0 &&
           logging.GetGlobalLogLevel() >= severity;
}

void LogLine(VLogLevel::VSeverityLevel severity, uint32_t groupId, const char* text)
{
    if (LogAdmits(severity, groupId)) {
        VLogging::GetInstance().Log(severity, groupId, text);
    }
}

void FailAssertion(uint32_t groupId, const char* condition)
{
    if (LogAdmits(VLogLevel::eError, groupId)) {
        std::string line(condition);
        line += '.';
        VLogging::GetInstance().Log(VLogLevel::eError, groupId, line.c_str());
    }
    throw VOdxException(condition, VOdxException::OE_ModelError);
}

void LogWrongType(uint32_t groupId, const char* typeName)
{
    if (LogAdmits(VLogLevel::eError, groupId)) {
        std::string line("ODX ERR: Element is not of type ");
        line += typeName;
        VLogging::GetInstance().Log(VLogLevel::eError, groupId, line.c_str());
    }
}

} // namespace Internal
} // namespace NODX220
