#pragma once

#include "TesselSharedUtil/VYAString.h"
#include "framework/TesselODX220ModelExport.h"

namespace NODX220 {

using NTesselSharedUtil::VYAString;

// The one exception of the model. Thrown by value; the library itself catches nothing.
class TESSEL_ODX_API VOdxException {
public:
    enum VOdxExceptionCode : int {
        OE_ModelError = 0,
        OE_ConversionError = 1
    };

    VOdxException(const VYAString& message, VOdxExceptionCode code);
    VOdxException(const char* message, VOdxExceptionCode code);
    VOdxException(const VOdxException& other);
    VOdxException& operator=(const VOdxException& other);
    virtual ~VOdxException();

    VYAString GetMessage() const { return mMessage; }
    VOdxExceptionCode GetCode() const { return mCode; }
    // "OE_ModelError", "OE_ConversionError" or "UnknownValue".
    const char* GetEnumSpecAsString() const;
    // "OdxException", followed by " (<code> , <message>)" when there is a message.
    virtual VYAString ToString() const;

private:
    VYAString mMessage;
    VOdxExceptionCode mCode;
};

} // namespace NODX220
