#include "Platform/Text.h"

#include <QChar>
#include <QStringDecoder>

#include <unicode/brkiter.h>
#include <unicode/normalizer2.h>
#include <unicode/unistr.h>
#include <unicode/unorm.h>

#include <algorithm>
#include <memory>
#include <stdexcept>

namespace Talvo {

namespace {

template <class Predicate>
QStringView trimmed(QStringView text, Predicate isRemoved)
{
    // All of the characters in question are in the Basic Multilingual Plane: no surrogate is one.
    const auto isEdge = [&](QChar c) { return isRemoved(char32_t(c.unicode())); };
    qsizetype first = 0;
    qsizetype last = text.size();
    while (first < last && isEdge(text[first])) {
        ++first;
    }
    while (last > first && isEdge(text[last - 1])) {
        --last;
    }
    return text.sliced(first, last - first);
}

bool isWhitespaceOrNewline(char32_t character)
{
    return isWhitespace(character) || isNewline(character);
}

/// A view on Qt's UTF-16 without a copy.
icu::UnicodeString readOnlyAlias(QStringView text)
{
    constexpr UBool isTerminated = false;
    return {isTerminated, text.utf16(), static_cast<int32_t>(text.size())};
}

} // namespace

bool isWhitespace(char32_t character)
{
    return character == U'\t' || QChar::category(character) == QChar::Separator_Space;
}

bool isNewline(char32_t character)
{
    return (character >= 0x0A && character <= 0x0D) || character == 0x85 || character == 0x2028 ||
           character == 0x2029;
}

QStringView trimmedOfWhitespace(QStringView text)
{
    return trimmed(text, isWhitespace);
}

QStringView trimmedOfWhitespaceAndNewlines(QStringView text)
{
    return trimmed(text, isWhitespaceOrNewline);
}

QString textFromUtf8(QByteArrayView utf8)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless |
                                                     QStringDecoder::Flag::ConvertInitialBom);
    return decoder(utf8);
}

bool isBlankUtf8(QByteArrayView utf8)
{
    // Almost every text is decided by its first byte; only what begins with a byte beyond ASCII
    // has to be decoded.
    const auto firstOther = std::find_if_not(
        utf8.begin(), utf8.end(), [](char c) { return QByteArrayView(" \t\n\v\f\r").contains(c); });
    if (firstOther == utf8.end()) {
        return true;
    }
    const auto rest = utf8.sliced(firstOther - utf8.begin());
    return static_cast<unsigned char>(rest.front()) >= 0x80 &&
           trimmedOfWhitespaceAndNewlines(textFromUtf8(rest)).isEmpty();
}

QStringView firstCodeUnits(QStringView text, qsizetype count)
{
    if (text.size() <= count) {
        return text;
    }
    const bool splitsPair =
        count > 0 && text[count - 1].isHighSurrogate() && text[count].isLowSurrogate();
    return text.first(splitsPair ? count - 1 : count);
}

QString firstCharacters(const QString &text, int count)
{
    // Every character has at least one code unit: a text this short needs no look at its clusters.
    if (text.size() <= count) {
        return text;
    }
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::BreakIterator> boundaries(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    if (U_FAILURE(status) != 0) {
        throw std::runtime_error("no grapheme cluster data");
    }
    const icu::UnicodeString alias = readOnlyAlias(text);
    boundaries->setText(alias);
    const int32_t end = boundaries->next(count);
    return end == icu::BreakIterator::DONE ? text : text.first(end);
}

bool isCanonicallyEqual(QStringView left, QStringView right)
{
    if (left == right) {
        return true;
    }
    UErrorCode status = U_ZERO_ERROR;
    const int32_t order =
        unorm_compare(left.utf16(), static_cast<int32_t>(left.size()), right.utf16(),
                      static_cast<int32_t>(right.size()), 0, &status);
    return U_SUCCESS(status) != 0 && order == 0;
}

bool isCanonicallyEqualUtf8(QByteArrayView left, QByteArrayView right)
{
    return left == right || isCanonicallyEqual(textFromUtf8(left), textFromUtf8(right));
}

} // namespace Talvo
