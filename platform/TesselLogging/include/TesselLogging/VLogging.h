#ifndef TESSEL_LOGGING_VLOGGING_H
#define TESSEL_LOGGING_VLOGGING_H

#include <TesselLogging/TesselLoggingExport.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

namespace NTesselSharedUtil {
namespace Logging {

struct VLogLevel {
    enum VSeverityLevel : int { eSilent = -1, eError = 0, eWarning = 1, eInfo = 2, eDebug = 3 };
};

using VLogSink = std::function<void(VLogLevel::VSeverityLevel level, uint32_t groupId, const char* text)>;

// Process-wide logger, quiet until SetEnabled(true).
//
// Log groups are single bits so that a mask can select them: the first name
// registered gets 1u << 0, the next 1u << 1, and so on. Only 32 bits exist, so
// from the 33rd distinct name on every further name gets 1u << 31 and shares it
// with the 32nd group (GetGroupName reports the 32nd group's name for it).
//
// A message is passed to the sink when logging is enabled, its group id has a
// bit in common with the global mask, the global level is not negative and the
// message's level is at most the global level. Without a sink of its own the
// logger writes "[<severity>] <group>: <text>" lines to stderr.
//
// GetInstance() may be called from static initialisers of any library.
class TESSEL_LOGGING_API VLogging {
public:
    static VLogging& GetInstance();

    VLogging(const VLogging&) = delete;
    VLogging& operator=(const VLogging&) = delete;

    bool IsEnabled() const noexcept;
    void SetEnabled(bool enabled) noexcept;

    uint32_t GetGlobalLogGroupMask() const noexcept;
    void SetGlobalLogGroupMask(uint32_t mask) noexcept;

    VLogLevel::VSeverityLevel GetGlobalLogLevel() const noexcept;
    void SetGlobalLogLevel(VLogLevel::VSeverityLevel level) noexcept;

    // True when Log() with these arguments would reach the sink; lets callers
    // skip building expensive messages.
    bool WouldLog(VLogLevel::VSeverityLevel level, uint32_t groupId) const noexcept;
    void Log(VLogLevel::VSeverityLevel level, uint32_t groupId, const char* text);

    // A null name yields 0, a group id that never passes the mask.
    uint32_t GetOrCreateGroupId(const char* name);
    // Null unless id is the bit of a registered group.
    const char* GetGroupName(uint32_t id) const;

    // An empty function restores the default stderr sink.
    void SetSink(VLogSink sink);

private:
    static constexpr unsigned kMaxGroups = 32;

    VLogging() = default;
    ~VLogging() = default;

    void WriteToStderr(VLogLevel::VSeverityLevel level, uint32_t groupId, const char* text) const;

    std::atomic<bool> mEnabled{false};
    std::atomic<uint32_t> mGroupMask{0xFFFFFFFFu};
    std::atomic<int> mLevel{VLogLevel::eError};

    mutable std::mutex mMutex;
    std::array<std::string, kMaxGroups> mGroupNames;
    unsigned mGroupCount = 0;
    std::shared_ptr<const VLogSink> mSink;
};

} // namespace Logging
} // namespace NTesselSharedUtil

#endif
