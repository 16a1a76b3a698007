#include <TesselLogging/VLogging.h>

#include <cstdio>
#include <utility>

namespace NTesselSharedUtil {
namespace Logging {

namespace {

const char* SeverityWord(VLogLevel::VSeverityLevel level)
{
    switch (level) {
    case VLogLevel::eError:
        return "error";
    case VLogLevel::eWarning:
        return "warning";
    case VLogLevel::eInfo:
        return "info";
    case VLogLevel::eDebug:
        return "debug";
    default:
        return "log";
    }
}

bool IsSingleBit(uint32_t id)
{
    return id != 0 && (id & (id - 1)) == 0;
}

unsigned BitIndex(uint32_t singleBit)
{
    unsigned index = 0;
    while ((singleBit >>= 1) != 0) {
        ++index;
    }
    return index;
}

} // namespace

VLogging& VLogging::GetInstance()
{
    // Never destroyed, so static destructors elsewhere may still log safely.
    static VLogging* const instance = new VLogging();
    return *instance;
}

bool VLogging::IsEnabled() const noexcept
{
    return mEnabled.load(std::memory_order_relaxed);
}

void VLogging::SetEnabled(bool enabled) noexcept
{
    mEnabled.store(enabled, std::memory_order_relaxed);
}

uint32_t VLogging::GetGlobalLogGroupMask() const noexcept
{
    return mGroupMask.load(std::memory_order_relaxed);
}

void VLogging::SetGlobalLogGroupMask(uint32_t mask) noexcept
{
    mGroupMask.store(mask, std::memory_order_relaxed);
}

VLogLevel::VSeverityLevel VLogging::GetGlobalLogLevel() const noexcept
{
    return static_cast<VLogLevel::VSeverityLevel>(mLevel.load(std::memory_order_relaxed));
}

void VLogging::SetGlobalLogLevel(VLogLevel::VSeverityLevel level) noexcept
{
    mLevel.store(level, std::memory_order_relaxed);
}

bool VLogging::WouldLog(VLogLevel::VSeverityLevel level, uint32_t groupId) const noexcept
{
    const int globalLevel = mLevel.load(std::memory_order_relaxed);
    return IsEnabled() && (GetGlobalLogGroupMask() & groupId) != 0 && globalLevel >= 0 &&
           level >= 0 && level <= globalLevel;
}

void VLogging::Log(VLogLevel::VSeverityLevel level, uint32_t groupId, const char* text)
{
    if (!WouldLog(level, groupId)) {
        return;
    }
    if (!text) {
        text = "";
    }
    std::shared_ptr<const VLogSink> sink;
    {
        std::lock_guard<std::mutex> lock(mMutex);
        sink = mSink;
    }
    // Called without the lock held, so a sink may itself use the logger.
    if (sink) {
        (*sink)(level, groupId, text);
    } else {
        WriteToStderr(level, groupId, text);
    }
}

uint32_t VLogging::GetOrCreateGroupId(const char* name)
{
    if (!name) {
        return 0;
    }
    std::lock_guard<std::mutex> lock(mMutex);
    for (unsigned i = 0; i < mGroupCount; ++i) {
        if (mGroupNames[i] == name) {
            return 1u << i;
        }
    }
    if (mGroupCount == kMaxGroups) {
        return 1u << (kMaxGroups - 1);
    }
    mGroupNames[mGroupCount] = name;
    return 1u << mGroupCount++;
}

const char* VLogging::GetGroupName(uint32_t id) const
{
    if (!IsSingleBit(id)) {
        return nullptr;
    }
    const unsigned index = BitIndex(id);
    std::lock_guard<std::mutex> lock(mMutex);
    // Entries are written once and never change, so the pointer stays valid.
    return index < mGroupCount ? mGroupNames[index].c_str() : nullptr;
}

void VLogging::SetSink(VLogSink sink)
{
    std::shared_ptr<const VLogSink> fresh;
    if (sink) {
        fresh = std::make_shared<const VLogSink>(std::move(sink));
    }
    std::lock_guard<std::mutex> lock(mMutex);
    mSink.swap(fresh);
}

void VLogging::WriteToStderr(VLogLevel::VSeverityLevel level, uint32_t groupId, const char* text) const
{
    std::string line = "[";
    line += SeverityWord(level);
    line += "] ";
    if (const char* name = GetGroupName(groupId)) {
        line += name;
    } else {
        char hex[16];
        std::snprintf(hex, sizeof hex, "0x%08X", static_cast<unsigned>(groupId));
        line += hex;
    }
    line += ": ";
    line += text;
    line += '\n';
    std::fwrite(line.data(), 1, line.size(), stderr);
}

} // namespace Logging
} // namespace NTesselSharedUtil
