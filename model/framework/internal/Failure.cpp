#include "framework/internal/Failure.h"

#include <string>

#include "framework/VOdxException.h"

namespace NODX220 {
namespace Internal {

using NTesselSharedUtil::Logging::VLogging;
using NTesselSharedUtil::Logging::VLogLevel;

namespace {

bool LoggingAdmits(const VLogging& logging, uint32_t groupId)
{
    return logging.IsEnabled() && (logging.GetGlobalLogGroupMask() & groupId) != 0 &&
           logging.GetGlobalLogLevel() >= 0;
}

} // namespace

void LogLine(VLogLevel::VSeverityLevel severity, uint32_t groupId, const char* text)
{
    VLogging& logging = VLogging::GetInstance();
    if (LoggingAdmits(logging, groupId)) {
        logging.Log(severity, groupId, text);
    }
}

void FailAssertion(uint32_t groupId, const char* condition)
{
    VLogging& logging = VLogging::GetInstance();
    if (LoggingAdmits(logging, groupId)) {
        std::string line(condition);
        line += '.';
        logging.Log(VLogLevel::eError, groupId, line.c_str());
    }
    throw VOdxException(condition, VOdxException::OE_ModelError);
}

void LogWrongType(uint32_t groupId, const char* typeName)
{
    VLogging& logging = VLogging::GetInstance();
    if (LoggingAdmits(logging, groupId)) {
        std::string line("ODX ERR: Element is not of type ");
        line += typeName;
        logging.Log(VLogLevel::eError, groupId, line.c_str());
    }
}

} // namespace Internal
} // namespace NODX220
