#pragma once

namespace NODX220 {

// Kinds of document, as a link's DOCTYPE names them.
enum VDoctype {
    eDoctypeFlash = 0,
    eDoctypeContainer = 1,
    eDoctypeLayer = 2,
    eDoctypeMultipleEcuJobSpec = 3,
    eDoctypeComparamSpec = 4,
    eDoctypeVehicleInfoSpec = 5,
    eDoctypeComparamSubset = 6,
    eDoctypeEcuConfig = 7,
    eDoctypeFunctionDictionary = 8,
    // A link whose DOCTYPE is not set.
    eDoctypeNone = 9
};

} // namespace NODX220
