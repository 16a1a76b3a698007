#include <TesselSharedUtil/VYAString.h>

#include <cstring>
#include <ostream>

namespace NTesselSharedUtil {

VYAString::VYAString(const char* text)
{
    if (text) {
        mText.assign(text);
    }
}

VYAString::VYAString(const char* data, std::size_t length)
{
    if (data) {
        mText.assign(data, length);
    }
}

VYAString& VYAString::operator=(const char* text)
{
    if (text) {
        mText.assign(text); // assign() copes with text pointing into mText
    } else {
        mText.clear();
    }
    return *this;
}

VYAString& VYAString::Append(const char* text)
{
    if (text) {
        mText.append(text);
    }
    return *this;
}

VYAString& VYAString::Append(const VYAString& other)
{
    mText.append(other.mText);
    return *this;
}

bool operator==(const VYAString& lhs, const char* rhs) noexcept
{
    return lhs.GetView() == std::string_view(rhs ? rhs : "");
}

VYAString operator+(const VYAString& lhs, const VYAString& rhs)
{
    VYAString result(lhs);
    result.Append(rhs);
    return result;
}

VYAString operator+(const VYAString& lhs, const char* rhs)
{
    VYAString result(lhs);
    result.Append(rhs);
    return result;
}

VYAString operator+(const char* lhs, const VYAString& rhs)
{
    VYAString result(lhs);
    result.Append(rhs);
    return result;
}

std::ostream& operator<<(std::ostream& os, const VYAString& text)
{
    return os << text.GetView();
}

} // namespace NTesselSharedUtil
