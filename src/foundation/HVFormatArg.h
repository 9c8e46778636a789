#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

class HVString;

// One argument of a printf-style format, captured with its type so that a mismatched
// conversion prints something sensible instead of reading the wrong thing off the stack.
class HVFormatArg
{
public:
    enum class Kind { None, Signed, Unsigned, Double, Text16, Text8, Pointer };

    template <class T>
    static constexpr bool IsCharacter =
        std::is_same_v<std::remove_cv_t<T>, char> || std::is_same_v<std::remove_cv_t<T>, char16_t> ||
        std::is_same_v<std::remove_cv_t<T>, wchar_t>;

    HVFormatArg() = default;

    template <class T, std::enable_if_t<std::is_integral_v<T> || std::is_enum_v<T>, int> = 0>
    HVFormatArg(T value)
    {
        if constexpr (std::is_enum_v<T>) {
            kind_ = Kind::Signed;
            signed_ = static_cast<int64_t>(value);
        } else if constexpr (std::is_same_v<T, bool>) {
            kind_ = Kind::Signed;
            signed_ = value ? 1 : 0;
        } else if constexpr (std::is_signed_v<T>) {
            kind_ = Kind::Signed;
            signed_ = value;
        } else {
            kind_ = Kind::Unsigned;
            unsigned_ = value;
        }
    }
    HVFormatArg(double value) : kind_(Kind::Double), double_(value) {}
    HVFormatArg(float value) : kind_(Kind::Double), double_(value) {}
    HVFormatArg(const char16_t* text) : kind_(Kind::Text16), text16_(text ? text : u"(null)") {}
    HVFormatArg(char16_t* text) : HVFormatArg(static_cast<const char16_t*>(text)) {}
    HVFormatArg(char* text) : HVFormatArg(static_cast<const char*>(text)) {}
    HVFormatArg(std::u16string_view text) : kind_(Kind::Text16), text16_(text) {}
    HVFormatArg(const std::u16string& text) : kind_(Kind::Text16), text16_(text) {}
    HVFormatArg(const char* text) : kind_(Kind::Text8), text8_(text ? text : "(null)") {}
    HVFormatArg(const std::string& text) : kind_(Kind::Text8), text8_(text) {}
    HVFormatArg(std::string_view text) : kind_(Kind::Text8), text8_(text) {}
    HVFormatArg(const HVString& text);
#ifdef _WIN32
    HVFormatArg(const wchar_t* text)
        : HVFormatArg(reinterpret_cast<const char16_t*>(text))
    {
        static_assert(sizeof(wchar_t) == sizeof(char16_t));
    }
    HVFormatArg(wchar_t* text) : HVFormatArg(static_cast<const wchar_t*>(text)) {}
#endif
    template <class T, std::enable_if_t<!IsCharacter<T>, int> = 0>
    HVFormatArg(T* pointer)
        : kind_(Kind::Pointer), unsigned_(reinterpret_cast<uintptr_t>(pointer))
    {
    }

    Kind kind() const { return kind_; }
    int64_t AsSigned() const;
    uint64_t AsUnsigned() const;
    double AsDouble() const;
    std::u16string_view Text16() const { return text16_; }
    std::string_view Text8() const { return text8_; }

private:
    Kind kind_ = Kind::None;
    int64_t signed_ = 0;
    uint64_t unsigned_ = 0;
    double double_ = 0;
    std::u16string_view text16_;
    std::string_view text8_;
};
