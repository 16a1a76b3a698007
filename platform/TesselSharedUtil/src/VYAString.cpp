#include <TesselSharedUtil/VYAString.h>

#include <cstring>
#include <ostream>

namespace NTesselSharedUtil {

VYAString::VYAString(const char* text)
{
    if (text) {
        m_text.assign(text);
    }
}

VYAString::VYAString(const char* data, std::size_t length)
{
    if (data) {
        m_text.assign(data, length);
    }
}

VYAString& VYAString::operator=(const char* text)
{
    if (text) {
        m_text.assign(text); // assign() copes with text pointing into m_text
    } else {
        m_text.clear();
    }
    return *this;
}

VYAString& VYAString::Append(const char* text)
{
    if (text) {
        m_text.append(text);
    }
    return *this;
}

VYAString& VYAString::Append(const VYAString& other)
{
    m_text.append(other.m_text);
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
