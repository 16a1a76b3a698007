#include <TesselSharedUtil/VContainerYAString.h>

#include <limits>
#include <stdexcept>
#include <string>

namespace NTesselSharedUtil {

namespace {

void CheckRoomForOneMore(std::size_t size)
{
    if (size >= std::numeric_limits<unsigned>::max()) {
        throw std::length_error("VContainerYAString: too many entries");
    }
}

[[noreturn]] void ThrowOutOfRange(unsigned index, unsigned size)
{
    throw std::out_of_range("VContainerYAString::At: index " + std::to_string(index) +
                            " out of range (size " + std::to_string(size) + ")");
}

} // namespace

void VContainerYAString::Pushback(const VYAString& value)
{
    CheckRoomForOneMore(mItems.size());
    mItems.push_back(value);
}

void VContainerYAString::Pushback(VYAString&& value)
{
    CheckRoomForOneMore(mItems.size());
    mItems.push_back(std::move(value));
}

void VContainerYAString::Pushback(const char* value)
{
    CheckRoomForOneMore(mItems.size());
    mItems.emplace_back(value);
}

const VYAString& VContainerYAString::At(unsigned index) const
{
    if (index >= Size()) {
        ThrowOutOfRange(index, Size());
    }
    return mItems[index];
}

VYAString& VContainerYAString::At(unsigned index)
{
    if (index >= Size()) {
        ThrowOutOfRange(index, Size());
    }
    return mItems[index];
}

} // namespace NTesselSharedUtil
