// Raw property values, as a reader delivers them: a small stand-in for the property variant of Windows.
#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "base/ref.h"

namespace kelvane {

// The variant types in use, with their published numbers (VARENUM).
enum class VarType : std::uint16_t {
    empty = 0x00,
    int16 = 0x02,
    int32 = 0x03,
    float32 = 0x04,
    float64 = 0x05,
    currency = 0x06,
    oleDate = 0x07,
    bstr = 0x08,
    error = 0x0A,
    boolean = 0x0B,
    object = 0x0D,
    int8 = 0x10,
    uint8 = 0x11,
    uint16 = 0x12,
    uint32 = 0x13,
    int64 = 0x14,
    uint64 = 0x15,
    machineInt = 0x16,
    machineUint = 0x17,
    result = 0x19,
    narrowText = 0x1E,
    wideText = 0x1F,
    fileTime = 0x40,
    blob = 0x41,
    vectorFlag = 0x1000,  // added to an element type
};

// Anything that a value may carry by reference (descriptors, previews).
class RawObject : public RefCounted<RawObject> {
public:
    virtual ~RawObject() = default;
};

// A value of a property. The type says how the data is to be read: all integers, booleans, currencies and file times
// are held as their 64-bit pattern, OLE dates as double.
struct RawValue {
    using Data = std::variant<std::monostate, std::uint64_t, float, double, std::u16string, std::vector<float>,
                              std::vector<double>, std::vector<std::u16string>, Ref<RawObject>>;
    VarType type = VarType::empty;
    bool isVector = false;
    Data data;

    [[nodiscard]] bool empty() const { return type == VarType::empty; }

    static RawValue number(VarType type, std::uint64_t bits) { return {type, false, bits}; }
    static RawValue text(std::u16string text) { return {VarType::wideText, false, std::move(text)}; }
    static RawValue texts(std::vector<std::u16string> texts) { return {VarType::wideText, true, std::move(texts)}; }
    static RawValue float64(double value) { return {VarType::float64, false, value}; }
};

}  // namespace kelvane
