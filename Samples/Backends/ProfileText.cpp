#include "ProfileText.h"

#include "ProfileTree.h"

#include <windows.h>

#include <algorithm>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

constexpr std::string_view firstLine = "; CommonUi settings, version 1";
// A file that begins with our first line and lacks this one has lost its end.
constexpr std::string_view lastLine = "; end";
constexpr std::wstring_view blanks = L" \t";
constexpr std::string_view hexDigits = "0123456789abcdef";
constexpr std::string_view dwordPrefix = "dword:";
constexpr std::string_view binaryPrefix = "hex:";

// Escaped by a letter of their own.
constexpr std::pair<wchar_t, char> escapes[] = {
    {L'\\', '\\'}, {L'"', '"'}, {L'\r', 'r'}, {L'\n', 'n'}, {L'\t', 't'}};

bool IsPair(std::wstring_view text)
{
    return text.size() > 1 && IS_SURROGATE_PAIR(text[0], text[1]);
}

// Whether editors or the conversion to UTF-8 would not leave the first character as it is.
bool IsFragile(std::wstring_view text)
{
    const wchar_t unit = text.front();
    return unit < L' ' || (unit >= 0x7F && unit < 0xA0) || unit == 0x2028 || unit == 0x2029 ||
           unit == 0xFEFF || ((IS_HIGH_SURROGATE(unit) || IS_LOW_SURROGATE(unit)) && !IsPair(text));
}

// Ends a name that stands without quotes.
constexpr bool IsNameEnd(wchar_t unit)
{
    return unit == L'=' || unit == L';' || unit == L'[' || unit == L']' || unit == L'"' ||
           unit == L'\\';
}

bool IsPlainName(std::wstring_view name)
{
    if (name.empty() || name.front() == L' ' || name.back() == L' ') {
        return false;
    }
    const auto isOrdinary = [](wchar_t unit) {
        return unit >= L' ' && unit < 0x7F && !IsNameEnd(unit);
    };
    const auto special = std::find_if_not(name.begin(), name.end(), isOrdinary);
    name.remove_prefix(static_cast<std::size_t>(special - name.begin()));
    for (; !name.empty(); name.remove_prefix(IsPair(name) ? 2 : 1)) {
        if (IsNameEnd(name.front()) || IsFragile(name)) {
            return false;
        }
    }
    return true;
}

// What needs no second look is copied in runs.
class TextWriter
{
public:
    explicit TextWriter(std::string room = {}) : text(std::move(room)) { text.clear(); }
    std::string Take() { return std::move(text); }

    void AddLine(std::string_view line) { text.append(line).append("\r\n"); }
    // path: the section's, empty for the file's own key.
    void AddKey(const ProfileNode& key, const std::string& path);
    void AddValue(const ProfileValue& value);

private:
    void AddLines(const NamedList<ProfileValue>& values);
    void AddName(std::wstring_view name);
    void AddQuoted(std::wstring_view quoted);
    void AddCharacters(std::wstring_view characters);
    void AddData(const ProfileData& data);
    void AddAscii(std::wstring_view ascii);
    void AddSpecial(std::wstring_view character);
    void AddHex(unsigned value, int digits);

    std::string text;
};

void TextWriter::AddKey(const ProfileNode& key, const std::string& path)
{
    if (!path.empty()) {
        AddLine("[" + path + "]");
    }
    AddLines(key.GetValues());
    for (const ProfileChild& child : key.GetChildren()) {
        TextWriter name;
        name.AddName(child.name);
        AddKey(*child.node, path.empty() ? name.Take() : path + '\\' + name.Take());
    }
}

// Ten thousand values are an ordinary key: the room for all is made once, and then filled.
void TextWriter::AddLines(const NamedList<ProfileValue>& values)
{
    std::size_t bytes = 0;
    for (const ProfileValue& value : values) {
        if (value.line.empty()) {
            value.line = FormatValue(value);
        }
        bytes += value.line.size();
    }
    constexpr std::size_t margin = 64;  // the last line is not to move everything once more
    const std::size_t start = text.size();
    text.reserve(start + bytes + margin);
    text.resize(start + bytes);
    char* end = text.data() + start;
    for (const ProfileValue& value : values) {
        end = std::copy(value.line.begin(), value.line.end(), end);
    }
}

void TextWriter::AddValue(const ProfileValue& value)
{
    AddName(value.name);
    text += '=';
    AddData(value.data);
    AddLine("");
}

void TextWriter::AddName(std::wstring_view name)
{
    const bool isQuoted = !IsPlainName(name);
    text.append(isQuoted ? 1 : 0, '"');
    AddCharacters(name);
    text.append(isQuoted ? 1 : 0, '"');
}

void TextWriter::AddQuoted(std::wstring_view quoted)
{
    text += '"';
    AddCharacters(quoted);
    text += '"';
}

void TextWriter::AddCharacters(std::wstring_view characters)
{
    const auto isSpecial = [](wchar_t unit) {
        return unit < L' ' || unit >= 0x7F || unit == L'"' || unit == L'\\';
    };
    while (!characters.empty()) {
        const auto special = std::find_if(characters.begin(), characters.end(), isSpecial);
        const auto run = static_cast<std::size_t>(special - characters.begin());
        AddAscii(characters.substr(0, run));
        characters.remove_prefix(run);
        if (!characters.empty()) {
            AddSpecial(characters);
            characters.remove_prefix(IsPair(characters) ? 2 : 1);
        }
    }
}

void TextWriter::AddData(const ProfileData& data)
{
    if (const auto* number = std::get_if<DWORD>(&data)) {
        text += dwordPrefix;
        AddHex(*number, 8);
    } else if (const auto* string = std::get_if<YUnicodeString>(&data)) {
        AddQuoted(*string);
    } else {
        text += binaryPrefix;
        for (const BYTE byte : std::get<std::vector<BYTE>>(data)) {
            AddHex(byte, 2);
        }
    }
}

void TextWriter::AddAscii(std::wstring_view ascii)
{
    const std::size_t start = text.size();
    text.resize(start + ascii.size());
    std::transform(ascii.begin(), ascii.end(), text.begin() + static_cast<std::ptrdiff_t>(start),
                   [](wchar_t unit) { return static_cast<char>(unit); });
}

// The first character: escaped or in UTF-8.
void TextWriter::AddSpecial(std::wstring_view character)
{
    const wchar_t unit = character.front();
    for (const auto& [plain, letter] : escapes) {
        if (unit == plain) {
            text.append(1, '\\').append(1, letter);
            return;
        }
    }
    if (IsFragile(character)) {
        text += "\\u";
        AddHex(unit, 4);
        return;
    }
    char bytes[4];
    const int size = ::WideCharToMultiByte(CP_UTF8, 0, character.data(), IsPair(character) ? 2 : 1,
                                           bytes, sizeof bytes, nullptr, nullptr);
    text.append(bytes, static_cast<std::size_t>(size));
}

void TextWriter::AddHex(unsigned value, int digits)
{
    char code[8];
    for (int i = digits; i-- > 0; value >>= 4) {
        code[i] = hexDigits[value & 0xF];
    }
    text.append(code, static_cast<std::size_t>(digits));
}

// Nothing: the bytes are no UTF-8.
std::optional<std::wstring> FromUtf8(std::string_view bytes)
{
    const int size = static_cast<int>(bytes.size());
    const int units =
        ::MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, bytes.data(), size, nullptr, 0);
    if (units == 0) {
        return {};
    }
    std::wstring text(static_cast<std::size_t>(units), L'\0');
    ::MultiByteToWideChar(CP_UTF8, 0, bytes.data(), size, text.data(), units);
    return text;
}

// Takes one line to pieces from its front.
class LineReader
{
public:
    explicit LineReader(std::wstring_view line) : rest(line) {}

    bool IsAtEnd() const { return rest.empty(); }
    bool Take(std::string_view expected)  // ASCII
    {
        const std::wstring_view start = rest.substr(0, expected.size());
        if (!std::equal(start.begin(), start.end(), expected.begin(), expected.end())) {
            return false;
        }
        rest.remove_prefix(expected.size());
        return true;
    }
    void SkipBlanks() { rest.remove_prefix(std::min(rest.find_first_not_of(blanks), rest.size())); }

    bool TakeName(std::wstring& name);
    bool TakeQuoted(std::wstring& text);
    bool TakeNumber(std::size_t maxDigits, unsigned& number);
    bool TakeData(ProfileData& data);

private:
    bool TakeEscape(std::wstring& text);
    bool TakeBytes(std::vector<BYTE>& bytes);

    std::wstring_view rest;
};

bool LineReader::TakeName(std::wstring& name)
{
    if (rest.starts_with(L'"')) {
        return TakeQuoted(name);
    }
    const auto* const last = std::find_if(rest.begin(), rest.end(), &IsNameEnd);
    const auto end = static_cast<std::size_t>(last - rest.begin());
    name = rest.substr(0, end);
    name.erase(name.find_last_not_of(blanks) + 1);
    rest.remove_prefix(end);
    return IsPlainName(name);
}

bool LineReader::TakeQuoted(std::wstring& text)
{
    text.clear();
    if (!Take("\"")) {
        return false;
    }
    while (!IsAtEnd()) {
        const std::size_t run = std::min(rest.find_first_of(L"\"\\"), rest.size());
        text += rest.substr(0, run);
        rest.remove_prefix(run);
        if (Take("\"")) {
            return true;
        }
        if (Take("\\") && !TakeEscape(text)) {
            return false;
        }
    }
    return false;
}

// What follows the backslash.
bool LineReader::TakeEscape(std::wstring& text)
{
    for (const auto& [plain, letter] : escapes) {
        if (Take({&letter, 1})) {
            text += plain;
            return true;
        }
    }
    unsigned unit = 0;
    const std::size_t length = rest.size();
    if (!Take("u") || !TakeNumber(4, unit) || length - rest.size() != 5) {
        return false;
    }
    text += static_cast<wchar_t>(unit);
    return true;
}

// At least one digit, in either case.
bool LineReader::TakeNumber(std::size_t maxDigits, unsigned& number)
{
    number = 0;
    std::size_t count = 0;
    for (; count < maxDigits && count < rest.size(); ++count) {
        const wchar_t letter = rest[count];
        const wchar_t lower = letter >= L'A' && letter <= L'F' ? letter | 0x20 : letter;
        const auto* const found = std::find(hexDigits.begin(), hexDigits.end(), lower);
        if (found == hexDigits.end()) {
            break;
        }
        const auto digit = static_cast<unsigned>(found - hexDigits.begin());
        number = number << 4 | digit;
    }
    rest.remove_prefix(count);
    return count > 0;
}

bool LineReader::TakeBytes(std::vector<BYTE>& bytes)
{
    bytes.reserve(rest.size() / 2);
    while (rest.size() >= 2) {
        const std::size_t length = rest.size();
        unsigned byte = 0;
        if (!TakeNumber(2, byte) || length - rest.size() != 2) {
            break;
        }
        bytes.push_back(static_cast<BYTE>(byte));
    }
    return true;
}

bool LineReader::TakeData(ProfileData& data)
{
    if (Take(dwordPrefix)) {
        unsigned number = 0;
        const bool taken = TakeNumber(8, number);
        data = DWORD{number};
        return taken;
    }
    if (Take(binaryPrefix)) {
        return TakeBytes(data.emplace<std::vector<BYTE>>());
    }
    std::wstring text;
    const bool taken = TakeQuoted(text);
    data = YUnicodeString(text);
    return taken;
}

class ProfileParser
{
public:
    // startsAsOurs: begins with our first line, so that the last one must be there.
    explicit ProfileParser(bool startsAsOurs) : isOurs(startsAsOurs) {}

    // Null: a line was not understood, or the end is missing.
    std::shared_ptr<ProfileNode> Parse(std::wstring_view text);

private:
    bool ParseLine(std::wstring_view line);
    bool ParseSection(LineReader reader);
    bool ParseValue(LineReader reader);
    bool IsWhole() const { return isOurs ? hasEnd : !isEmpty; }

    std::shared_ptr<ProfileNode> root = std::make_shared<ProfileNode>();
    std::shared_ptr<ProfileNode> section = root;
    const bool isOurs;
    bool hasEnd = false;
    bool isEmpty = true;  // comments only: no one would keep such a file
};

std::shared_ptr<ProfileNode> ProfileParser::Parse(std::wstring_view text)
{
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(L'\n'), text.size());
        std::wstring_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        line.remove_suffix(line.ends_with(L'\r') ? 1 : 0);
        if (!ParseLine(line)) {
            return nullptr;
        }
    }
    root->ForgetChanges();
    return IsWhole() ? root : nullptr;
}

bool ProfileParser::ParseLine(std::wstring_view line)
{
    if (line.find(L'\0') != std::wstring_view::npos) {
        return false;
    }
    line.remove_prefix(std::min(line.find_first_not_of(blanks), line.size()));
    const LineReader reader(line);
    if (reader.IsAtEnd() || line.starts_with(L';')) {
        hasEnd = hasEnd || std::equal(line.begin(), line.end(), lastLine.begin(), lastLine.end());
        return true;
    }
    isEmpty = false;
    return line.starts_with(L'[') ? ParseSection(reader) : ParseValue(reader);
}

bool ProfileParser::ParseSection(LineReader reader)
{
    section = root;
    unsigned depth = 0;
    reader.Take("[");
    do {
        std::wstring name;
        reader.SkipBlanks();
        if (++depth > ProfileNode::maxDepth || !reader.TakeName(name)) {
            return false;
        }
        reader.SkipBlanks();
        const std::shared_ptr<ProfileNode> child = section->FindChild(name);
        section = child ? child : section->MakeChild(name);
    } while (reader.Take("\\"));
    const bool isClosed = reader.Take("]");
    reader.SkipBlanks();
    return isClosed && reader.IsAtEnd();
}

bool ProfileParser::ParseValue(LineReader reader)
{
    std::wstring name;
    if (!reader.TakeName(name)) {
        return false;
    }
    reader.SkipBlanks();
    if (!reader.Take("=")) {
        return false;
    }
    reader.SkipBlanks();
    ProfileData data;
    if (!reader.TakeData(data)) {
        return false;
    }
    section->Load(name, std::move(data));
    reader.SkipBlanks();
    return reader.IsAtEnd();
}

}  // namespace

std::string FormatProfile(const ProfileNode& root, std::string room)
{
    TextWriter writer(std::move(room));
    writer.AddLine(firstLine);
    writer.AddKey(root, {});
    writer.AddLine(lastLine);
    return writer.Take();
}

std::string FormatValue(const ProfileValue& value)
{
    TextWriter writer;
    writer.AddValue(value);
    return writer.Take();
}

std::shared_ptr<ProfileNode> ParseProfile(std::string_view bytes)
{
    if (bytes.starts_with("\xEF\xBB\xBF")) {
        bytes.remove_prefix(3);
    }
    const std::optional<std::wstring> text = FromUtf8(bytes);
    return text ? ProfileParser(bytes.starts_with(firstLine)).Parse(*text) : nullptr;
}

bool IsWholeProfile(std::string_view bytes)
{
    return bytes.starts_with(firstLine) && bytes.ends_with(std::string(lastLine) + "\r\n");
}
