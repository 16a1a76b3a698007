#ifndef TESSEL_SHAREDUTIL_VYASTRING_H
#define TESSEL_SHAREDUTIL_VYASTRING_H

#include <TesselSharedUtil/TesselSharedUtilExport.h>

#include <cstddef>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>

namespace NTesselSharedUtil {

// UTF-8 text held by value. The bytes are not validated; ordering is byte-wise
// (unsigned), and embedded NUL bytes are kept when a length is given.
// A null `const char*` is accepted everywhere and means the empty string.
class TESSEL_SHAREDUTIL_API VYAString {
public:
    VYAString() noexcept = default;
    VYAString(const char* text);
    VYAString(const char* data, std::size_t length);
    VYAString(const VYAString& other) = default;
    VYAString(VYAString&& other) noexcept = default;
    ~VYAString() = default;

    VYAString& operator=(const char* text);
    VYAString& operator=(const VYAString& other) = default;
    VYAString& operator=(VYAString&& other) noexcept = default;

    VYAString& Append(const char* text);
    VYAString& Append(const VYAString& other);

    // Never null; the buffer is NUL-terminated after GetLength() bytes.
    const char* GetBuffer() const noexcept { return mText.c_str(); }
    std::size_t GetLength() const noexcept { return mText.size(); }
    bool IsEmpty() const noexcept { return mText.empty(); }
    void Clear() noexcept { mText.clear(); }
    std::string_view GetView() const noexcept { return mText; }

    friend bool operator==(const VYAString& lhs, const VYAString& rhs) noexcept { return lhs.mText == rhs.mText; }
    friend bool operator!=(const VYAString& lhs, const VYAString& rhs) noexcept { return !(lhs == rhs); }
    friend bool operator<(const VYAString& lhs, const VYAString& rhs) noexcept { return lhs.mText < rhs.mText; }

private:
    std::string mText;
};

TESSEL_SHAREDUTIL_API bool operator==(const VYAString& lhs, const char* rhs) noexcept;
inline bool operator==(const char* lhs, const VYAString& rhs) noexcept { return rhs == lhs; }
inline bool operator!=(const VYAString& lhs, const char* rhs) noexcept { return !(lhs == rhs); }
inline bool operator!=(const char* lhs, const VYAString& rhs) noexcept { return !(rhs == lhs); }

TESSEL_SHAREDUTIL_API VYAString operator+(const VYAString& lhs, const VYAString& rhs);
TESSEL_SHAREDUTIL_API VYAString operator+(const VYAString& lhs, const char* rhs);
TESSEL_SHAREDUTIL_API VYAString operator+(const char* lhs, const VYAString& rhs);

TESSEL_SHAREDUTIL_API std::ostream& operator<<(std::ostream& os, const VYAString& text);

} // namespace NTesselSharedUtil

namespace std {
template <>
struct hash<NTesselSharedUtil::VYAString> {
    size_t operator()(const NTesselSharedUtil::VYAString& text) const noexcept
    {
        return hash<string_view>{}(text.GetView());
    }
};
} // namespace std

#endif
