// SPDX-License-Identifier: MIT
#include "Fuzz.h"

#include <KXFoundation/Util/KXUtil.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

using kx::fuzz::check;

namespace {

using Text = std::u16string;
using Texts = std::vector<Text>;

bool isDigit(char16_t unit)
{
    return unit >= u'0' && unit <= u'9';
}

// A text as pieces whose order is the order of the texts: a number is '0', then its length and its digits without
// leading zeros, anything else one unit.
Texts pieces(const Text &text)
{
    Texts result;
    for (std::size_t at = 0; at < text.size();) {
        if (!isDigit(text[at])) {
            result.emplace_back(1, text[at++]);
            continue;
        }
        Text digits;
        for (; at < text.size() && isDigit(text[at]); ++at) {
            if (text[at] != u'0' || !digits.empty())
                digits += text[at];
        }
        result.push_back(Text(u"0") + static_cast<char16_t>(digits.size()) + digits);
    }
    return result;
}

// Against another kind of piece, a number is as late as its first digit is.
int orderOfTexts(const Text &a, const Text &b)
{
    const Texts left = pieces(a);
    const Texts right = pieces(b);
    std::size_t atLeft = 0;
    std::size_t atRight = 0;
    for (std::size_t i = 0; i < std::min(left.size(), right.size()); ++i) {
        const bool bothNumbers = isDigit(left[i][0]) && isDigit(right[i][0]);
        const Text x = bothNumbers ? left[i] : Text(1, a[atLeft]);
        const Text y = bothNumbers ? right[i] : Text(1, b[atRight]);
        if (x != y)
            return x < y ? -1 : 1;
        for (; atLeft < a.size() && isDigit(left[i][0]) && isDigit(a[atLeft]); ++atLeft) { }
        for (; atRight < b.size() && isDigit(right[i][0]) && isDigit(b[atRight]); ++atRight) { }
        atLeft += isDigit(left[i][0]) ? 0 : 1;
        atRight += isDigit(right[i][0]) ? 0 : 1;
    }
    return left.size() == right.size() ? 0 : left.size() < right.size() ? -1 : 1;
}

Texts components(const Text &version)
{
    Texts result(1);
    for (const char16_t unit : version) {
        if (unit == u'.')
            result.emplace_back();
        else
            result.back() += unit;
    }
    return result;
}

long long number(const Text &component)
{
    long long value = 0;
    for (std::size_t i = 0; i < component.size() && isDigit(component[i]) && value < 2147483647; ++i)
        value = value * 10 + (component[i] - u'0');
    return std::min(value, 2147483647LL);
}

int naiveOrder(const Text &a, const Text &b)
{
    Texts left = components(a);
    Texts right = components(b);
    if (left.size() == right.size())
        return orderOfTexts(a, b);
    left.pop_back();
    right.pop_back();
    for (std::size_t i = 0; i < left.size() && i < right.size(); ++i) {
        if (number(left[i]) != number(right[i]))
            return number(left[i]) < number(right[i]) ? -1 : 1;
    }
    return left.size() > right.size() ? 1 : -1;
}

} // namespace

// Two versions with a line feed between them.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::uint8_t *const end = data + size;
    const std::uint8_t *const middle = std::find(data, end, std::uint8_t('\n'));
    const Text a(data, middle); // each byte is a unit
    const Text b(middle == end ? end : middle + 1, end);
    const QString left = QString::fromStdU16String(a);
    const QString right = QString::fromStdU16String(b);
    const int order = KXUtil::versionCompare(left, right);
    check(order == naiveOrder(a, b), "the order is right");
    check(KXUtil::versionCompare(right, left) == -order, "the other way round it is the opposite");
    check(KXUtil::versionCompare(left, left) == 0, "a version is like itself");
    return 0;
}
