#include "framework/VOdxException.h"

namespace NODX220 {

VOdxException::VOdxException(const VYAString& message, VOdxExceptionCode code)
    : mMessage(message), mCode(code)
{
}

VOdxException::VOdxException(const char* message, VOdxExceptionCode code)
    : mMessage(message), mCode(code)
{
}

VOdxException::VOdxException(const VOdxException& other) = default;
VOdxException& VOdxException::operator=(const VOdxException& other) = default;
VOdxException::~VOdxException() = default;

const char* VOdxException::GetEnumSpecAsString() const
{
    switch (mCode) {
    case OE_ModelError:
        return "OE_ModelError";
    case OE_ConversionError:
        return "OE_ConversionError";
    }
    return "UnknownValue";
}

VYAString VOdxException::ToString() const
{
    VYAString text("OdxException");
    if (!mMessage.IsEmpty()) {
        text.Append(" (");
        text.Append(GetEnumSpecAsString());
        text.Append(" , ");
        text.Append(mMessage);
        text.Append(")");
    }
    return text;
}

} // namespace NODX220
