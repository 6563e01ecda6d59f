#include "export/losslessText.h"

#include "export/losslessValues.h"
#include "model/CellValue.h"
#include "model/TOrbBlobData.h"
#include "model/TOrbComplexValue.h"
#include "util/json.h"

#include <cstdint>

namespace vellum {

namespace {

long decodeUtf8(std::string_view text, std::size_t &at)
{
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(at);
    if (lead < 0x80) {
        ++at;
        return lead;
    }
    std::size_t length = 0;
    long codePoint = 0;
    long minimum = 0;
    if ((lead & 0xE0) == 0xC0) {
        length = 2;
        codePoint = lead & 0x1F;
        minimum = 0x80;
    } else if ((lead & 0xF0) == 0xE0) {
        length = 3;
        codePoint = lead & 0x0F;
        minimum = 0x800;
    } else if ((lead & 0xF8) == 0xF0) {
        length = 4;
        codePoint = lead & 0x07;
        minimum = 0x10000;
    } else {
        ++at;
        return -1;
    }
    if (at + length > text.size()) {
        ++at;
        return -1;
    }
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(at + i) & 0xC0) != 0x80) {
            ++at;
            return -1;
        }
        codePoint = (codePoint << 6) | (byte(at + i) & 0x3F);
    }
    if (codePoint < minimum || codePoint > 0x10FFFF || (codePoint >= 0xD800 && codePoint <= 0xDFFF)) {
        ++at;
        return -1;
    }
    at += length;
    return codePoint;
}

bool isXmlCharacter(long c)
{
    return c == 0x9 || c == 0xA || c == 0xD || (c >= 0x20 && c <= 0xD7FF) || (c >= 0xE000 && c <= 0xFFFD) ||
           (c >= 0x10000 && c <= 0x10FFFF);
}

bool isAsciiLetter(long c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

/// Non-ASCII letters that every XML 1.0 parser accepts in names (both the original name
/// classes and the later, wider ranges): Latin-1 and Latin Extended-A letters, Greek, Cyrillic,
/// Hiragana, Katakana, CJK ideographs and Hangul syllables. Other characters are replaced,
/// which keeps every parser content; the original name is kept beside the element anyway.
bool isPortableNameLetter(long c)
{
    return (c >= 0xC0 && c <= 0xD6) || (c >= 0xD8 && c <= 0xF6) || (c >= 0xF8 && c <= 0xFF) ||
           (c >= 0x100 && c <= 0x131) || (c >= 0x134 && c <= 0x13E) || (c >= 0x141 && c <= 0x148) ||
           (c >= 0x14A && c <= 0x17E) || (c >= 0x391 && c <= 0x3A1) || (c >= 0x3A3 && c <= 0x3C9) ||
           (c >= 0x410 && c <= 0x44F) || (c >= 0x3041 && c <= 0x3094) || (c >= 0x30A1 && c <= 0x30FA) ||
           (c >= 0x4E00 && c <= 0x9FA5) || (c >= 0xAC00 && c <= 0xD7A3);
}

void appendUtf8(std::string &out, long c)
{
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

void appendIsoDate(std::string &out, std::string_view text)
{
    if (const auto iso = isoDateTime(text, 'T'))
        out += *iso;
    else
        out += text;
}

void appendBytes(std::string &out, std::string_view bytes, LosslessBytes encoding)
{
    if (encoding == LosslessBytes::Hex)
        out += lowerHexText(bytes.data(), bytes.size());
    else
        appendBase64(out, bytes.data(), bytes.size());
}

} // namespace

long nextUtf8CodePoint(std::string_view text, std::size_t &at)
{
    return decodeUtf8(text, at);
}

LosslessTextForm losslessTextFormForDataType(std::string_view dataType)
{
    if (dataType == "Text" || dataType == "Memo/Hyperlink")
        return LosslessTextForm::Text;
    if (dataType == "Boolean")
        return LosslessTextForm::Boolean;
    if (dataType == "Byte" || dataType == "Integer" || dataType == "Long Integer" || dataType == "Large Number")
        return LosslessTextForm::Integer;
    if (dataType == "Currency" || dataType == "Single" || dataType == "Double" || dataType == "Numeric")
        return LosslessTextForm::Decimal;
    if (dataType == "DateTime" || dataType == "Date/Time Extended")
        return LosslessTextForm::DateTime;
    if (dataType == "Replication ID")
        return LosslessTextForm::Guid;
    if (dataType == "OLE")
        return LosslessTextForm::Ole;
    if (dataType == "Complex Value auto number")
        return LosslessTextForm::Complex;
    return LosslessTextForm::Bytes;
}

bool isQuotedLosslessForm(LosslessTextForm form)
{
    return form != LosslessTextForm::Boolean && form != LosslessTextForm::Integer && form != LosslessTextForm::Decimal;
}

bool isBytesValue(const CellValue &cell, LosslessTextForm form)
{
    if (cell.isBlob())
        return true;
    return cell.isText() && !cell.isComplex() && (form == LosslessTextForm::Bytes || form == LosslessTextForm::Ole);
}

std::string_view cellBytes(const CellValue &cell)
{
    if (cell.isBlob())
        return {reinterpret_cast<const char *>(cell.blob->data().data()), cell.blob->data().size()};
    return cell.text;
}

void appendLosslessValue(std::string &out, const CellValue &cell, LosslessTextForm form,
                         const LosslessValueStyle &style)
{
    if (cell.isComplex()) {
        appendComplexJson(out, *cell.complex);
        return;
    }
    if (isBytesValue(cell, form)) {
        appendBytes(out, cellBytes(cell), style.bytes);
        return;
    }
    const std::string_view text = cell.text;
    switch (form) {
    case LosslessTextForm::Boolean:
        out += text == "0" ? "false" : text == "1" ? "true" : text;
        break;
    case LosslessTextForm::Decimal:
        if (style.decimalSymbol == ".") {
            out += text;
        } else {
            for (const char c : text) {
                if (c == '.')
                    out += style.decimalSymbol;
                else
                    out += c;
            }
        }
        break;
    case LosslessTextForm::DateTime:
        appendIsoDate(out, text);
        break;
    default:
        out += text;
        break;
    }
}

void appendComplexJson(std::string &out, const TOrbComplexValue &value)
{
    appendJsonComplexArray(out, value);
}

bool delimitedFieldNeedsQuotes(std::string_view value, std::string_view fieldDelimiter, std::string_view quote,
                               std::string_view nullMarker)
{
    if (!nullMarker.empty() && value == nullMarker)
        return true;
    if (value.find('\n') != std::string_view::npos || value.find('\r') != std::string_view::npos)
        return true;
    if (!fieldDelimiter.empty() && value.find(fieldDelimiter) != std::string_view::npos)
        return true;
    return !quote.empty() && value.find(quote) != std::string_view::npos;
}

std::string xmlElementName(std::string_view columnName, bool asciiOnly)
{
    std::string name;
    for (std::size_t at = 0; at < columnName.size();) {
        const long c = decodeUtf8(columnName, at);
        const bool letter = isAsciiLetter(c) || c == '_' || (!asciiOnly && isPortableNameLetter(c));
        if (letter || (c >= '0' && c <= '9') || c == '-' || c == '.')
            appendUtf8(name, c);
        else
            name += '_';
    }
    // A name starts with a letter or "_" (a replaced character is one), and names beginning
    // with "xml" in any case are reserved.
    const unsigned char first = name.empty() ? '0' : static_cast<unsigned char>(name[0]);
    const bool startsWell = isAsciiLetter(first) || first == '_' || first >= 0x80;
    const bool reserved = name.size() >= 3 && (name[0] == 'x' || name[0] == 'X') &&
                          (name[1] == 'm' || name[1] == 'M') && (name[2] == 'l' || name[2] == 'L');
    if (!startsWell || reserved)
        name.insert(name.begin(), '_');
    return name;
}

bool isXmlText(std::string_view text)
{
    for (std::size_t at = 0; at < text.size();) {
        const unsigned char byte = static_cast<unsigned char>(text[at]);
        if (byte >= 0x20 && byte < 0x80) {
            ++at;
            continue;
        }
        if (!isXmlCharacter(decodeUtf8(text, at)))
            return false;
    }
    return true;
}

void appendXmlText(std::string &out, std::string_view text)
{
    for (const char c : text) {
        switch (c) {
        case '&':
            out += "&amp;";
            break;
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '"':
            out += "&quot;";
            break;
        case '\r':
            out += "&#13;";
            break;
        default:
            out += c;
            break;
        }
    }
}

void appendXmlAttribute(std::string &out, std::string_view text)
{
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t start = at;
        const long c = decodeUtf8(text, at);
        if (c == '\t')
            out += "&#9;";
        else if (c == '\n')
            out += "&#10;";
        else if (!isXmlCharacter(c))
            out += "\xEF\xBF\xBD";
        else
            appendXmlText(out, text.substr(start, at - start));
    }
}

std::string xmlEncodingName(std::string_view iconvName)
{
    const std::string name(iconvName);
    if (name == "ASCII")
        return "US-ASCII";
    if (name == "MACINTOSH")
        return "macintosh";
    if (name.rfind("CP125", 0) == 0)
        return "windows-" + name.substr(2);
    if (name == "CP437" || name == "CP850" || name == "CP852" || name == "CP866")
        return "IBM" + name.substr(2);
    if (name == "CP874")
        return "windows-874";
    if (name == "CP932")
        return "Windows-31J";
    if (name == "CP936")
        return "GBK";
    if (name == "CP949")
        return "KS_C_5601-1987";
    if (name == "CP950")
        return "Big5";
    if (name == "MAC-CYRILLIC")
        return "x-mac-cyrillic";
    if (name == "MAC-CENTRALEUROPE")
        return "x-mac-ce";
    if (name == "SHIFT_JIS")
        return "Shift_JIS";
    return name;
}

} // namespace vellum
