#ifndef TESSEL_SHAREDUTIL_VCONTAINERYASTRING_H
#define TESSEL_SHAREDUTIL_VCONTAINERYASTRING_H

#include <TesselSharedUtil/TesselSharedUtilExport.h>
#include <TesselSharedUtil/VYAString.h>

#include <vector>

namespace NTesselSharedUtil {

// Ordered list of strings. At() throws std::out_of_range for index >= Size().
class TESSEL_SHAREDUTIL_API VContainerYAString {
public:
    using const_iterator = std::vector<VYAString>::const_iterator;

    VContainerYAString() = default;

    void Pushback(const VYAString& value);
    void Pushback(VYAString&& value);
    void Pushback(const char* value);

    unsigned Size() const noexcept { return static_cast<unsigned>(mItems.size()); }
    bool IsEmpty() const noexcept { return mItems.empty(); }
    void Clear() noexcept { mItems.clear(); }

    const VYAString& At(unsigned index) const;
    VYAString& At(unsigned index);

    const_iterator begin() const noexcept { return mItems.begin(); }
    const_iterator end() const noexcept { return mItems.end(); }

private:
    std::vector<VYAString> mItems;
};

} // namespace NTesselSharedUtil

#endif
