// The decoder: every encoding, cut anywhere; and the rules that classify its lines.
#include "LineBatch.h"
#include "LineDecoder.h"
#include "LineRules.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

namespace {

using Lines = std::vector<std::wstring>;

const unsigned char* BytesOf(std::string_view text)
{
    return reinterpret_cast<const unsigned char*>(text.data());
}

Lines TextOf(const LineBatch& batch)
{
    Lines lines;
    for (unsigned i = 0; i < batch.GetCount(); ++i) {
        const std::vector<wchar_t>& text = batch.GetLines()[i].text;
        lines.emplace_back(text.begin(), text.end());
    }
    return lines;
}

// In pieces of random lengths up to `longest`.
Lines Decode(std::string_view bytes, TextEncoding encoding, UINT codePage, std::size_t longest)
{
    std::minstd_rand random(static_cast<unsigned>(longest));
    LineDecoder decoder(encoding, codePage);
    LineBatch batch;
    while (!bytes.empty()) {
        const std::size_t piece = std::min(bytes.size(), 1 + random() % longest);
        decoder.Decode(BytesOf(bytes), piece, batch);
        bytes.remove_prefix(piece);
    }
    decoder.Finish(batch);
    return TextOf(batch);
}

using namespace std::string_view_literals;

constexpr TextEncoding utf8 = TextEncoding::Utf8;
constexpr TextEncoding little = TextEncoding::Utf16LittleEndian;
constexpr TextEncoding big = TextEncoding::Utf16BigEndian;
constexpr TextEncoding ansi = TextEncoding::CodePage;

// The lines of these bytes, wherever they are cut.
void ExpectLines(std::string_view bytes, const Lines& lines, TextEncoding encoding = utf8,
                 UINT codePage = 0)
{
    for (const std::size_t longest : {1000u, 1u, 2u, 3u, 7u}) {
        EXPECT_EQ(Decode(bytes, encoding, codePage, longest), lines)
            << testing::PrintToString(bytes) << " in pieces of " << longest;
    }
}

TEST(LineDecoder, EndsLinesAndFillsTabs)
{
    ExpectLines("a\nb\r\nc\rd\r\r\n\ne", {L"a", L"b", L"c", L"d", L"", L"", L"e"});
    ExpectLines("a\r\n", {L"a"});
    ExpectLines("", {});
    ExpectLines("\tx\n1234567\ty\n12345678\tz", {L"        x", L"1234567 y", L"12345678        z"});
}

TEST(LineDecoder, ReplacesEachBadPartOfUtf8Once)
{
    ExpectLines("\xC3\xA9|\xE2\x82\xAC|\xF0\x9F\x98\x80", {L"\x00E9|\x20AC|\xD83D\xDE00"});
    ExpectLines("a\xF1\x80\x80\xE1\x80\xC2|\x80|\x80\xBF",
                {L"a\xFFFD\xFFFD\xFFFD|\xFFFD|\xFFFD\xFFFD"});
    // Overlong, a surrogate, past the last plane; cut by the end, by a line end.
    ExpectLines("\xC0\xAF|\xED\xA0\x80|\xF5", {L"\xFFFD\xFFFD|\xFFFD\xFFFD\xFFFD|\xFFFD"});
    ExpectLines("a\xE2\x82", {L"a\xFFFD"});
    ExpectLines("\xE2\x82\nb", {L"\xFFFD", L"b"});
}

TEST(LineDecoder, MakesControlsHarmless)
{
    ExpectLines("\x1B[0m\x07\x7F\xC2\x85|\xE2\x80\xAE\xE2\x81\xA6\xE2\x80\x8E|\0|"sv,
                {L"\x00B7[0m\x00B7\x00B7\x00B7|\x00B7\x00B7\x00B7|\x00B7|"});
}

TEST(LineDecoder, ReadsUtf16AndCodePages)
{
    ExpectLines("a\0\r\0\n\0\x3D\xD8\x00\xDE"sv, {L"a", L"\xD83D\xDE00"}, little);
    ExpectLines("\0a\0\n\x20\xAC"sv, {L"a", L"\x20AC"}, big);
    ExpectLines("a\0b"sv, {L"a\xFFFD"}, little);  // half a unit
    ExpectLines("\x80\xE9\n\x93", {L"\x20AC\x00E9", L"\x201C"}, ansi, 1252);
    ExpectLines("\x83\x65\x83\x58|\xB1\n\x83", {L"\x30C6\x30B9|\xFF71", L"\xFFFD"}, ansi, 932);
    ExpectLines("a\x83\nb", {L"a\xFFFD", L"b"}, ansi, 932);  // a stray first byte
}

// Text of everything that the decoder treats in a way of its own.
std::string MakeRandomBytes(std::size_t count)
{
    const std::vector<std::string_view> parts{"plain text of some length, as most is",
                                              "\n",
                                              "\r\n",
                                              "\r",
                                              "\t",
                                              "\xC3\xA9",
                                              "\xE2\x82\xAC",
                                              "\xF0\x9F\x98\x80",
                                              "\xFF",
                                              "\xE2",
                                              "\0"sv,
                                              "\r\n\n"};
    std::minstd_rand random(7);
    std::string text;
    while (text.size() < count) {
        text += parts[random() % parts.size()];
    }
    return text;
}

TEST(LineDecoder, RandomTextIsTheSameWhereverItIsCut)
{
    const std::string bytes = MakeRandomBytes(20'000);
    for (const auto& [encoding, codePage] :
         {std::pair{utf8, 0u}, std::pair{little, 0u}, std::pair{big, 0u}, std::pair{ansi, 932u}}) {
        const Lines whole = Decode(bytes, encoding, codePage, bytes.size());
        for (const std::size_t longest : {1u, 5u, 17u, 300u}) {
            EXPECT_EQ(Decode(bytes, encoding, codePage, longest), whole) << longest;
        }
    }
}

TEST(LineDecoder, CutsALineThatIsTooLong)
{
    const std::string bytes(LineDecoder::maxLineLength + 10, 'x');
    LineDecoder decoder(utf8);
    LineBatch batch;
    decoder.Decode(BytesOf(bytes), bytes.size(), batch);
    ASSERT_EQ(batch.GetCount(), 1u);
    EXPECT_EQ(batch.GetLines()->text.size(), LineDecoder::maxLineLength);
    EXPECT_EQ(decoder.GetUnfinishedLength(), 10u);
}

TEST(LineDecoder, DetectsTheEncoding)
{
    const std::tuple<std::string_view, TextEncoding, std::size_t> cases[] = {
        {"\xEF\xBB\xBFx", utf8, 3},      {"\xFF\xFEx\0"sv, little, 2},
        {"\xFE\xFF\0x"sv, big, 2},       {"l\0o\0g\0\xAC\x20"sv, little, 0},
        {"\0l\0o\0g\x20\xAC"sv, big, 0}, {"log \xE2\x82", utf8, 0},  // a character that is cut
        {"caf\xE9 ", ansi, 0},           {"log\0 of bytes, with one zero"sv, utf8, 0}};
    for (const auto& [bytes, encoding, markLength] : cases) {
        const DetectedEncoding detected = DetectEncoding(BytesOf(bytes), bytes.size());
        EXPECT_EQ(detected.encoding, encoding) << testing::PrintToString(bytes);
        EXPECT_EQ(detected.markLength, markLength) << testing::PrintToString(bytes);
    }
}

TEST(LineRules, ClassifyByWholeWordsInAnyCase)
{
    const std::pair<std::wstring, LineSeverity> cases[] = {
        {L"all is well", LineSeverity::Plain},
        {L"", LineSeverity::Plain},
        {L"[ErRoR] disk", LineSeverity::Error},
        {L"it failed", LineSeverity::Error},
        {L"terrors errorless unwarned", LineSeverity::Plain},
        {L"12:00 WARN: low", LineSeverity::Warning},
        {L"warning: fatal", LineSeverity::Error},  // outweighs
        {std::wstring(200, L' ') + L"error", LineSeverity::Plain}};  // too far behind
    for (const auto& [text, severity] : cases) {
        const LineAttributes* const attributes = ClassifyLine(text.data(), text.size());
        EXPECT_EQ(attributes ? attributes->severity : LineSeverity::Plain, severity)
            << testing::PrintToString(text);
    }
}

}  // namespace
