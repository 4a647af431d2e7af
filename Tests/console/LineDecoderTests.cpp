// The decoder: every encoding, cut anywhere; and the rules that classify its lines.
#include "LineBatch.h"
#include "LineDecoder.h"
#include "LineRules.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Lines = std::vector<std::wstring>;

struct CaseName
{
    template <class Case>
    std::string operator()(const testing::TestParamInfo<Case>& tested) const
    {
        return tested.param.name;
    }
};

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

struct DecodeCase
{
    const char* name;
    TextEncoding encoding;
    UINT codePage;
    std::string_view bytes;
    Lines lines;
};

class LineDecoderText : public testing::TestWithParam<DecodeCase>
{};

TEST_P(LineDecoderText, IsTheSameWhereverItIsCut)
{
    const DecodeCase& c = GetParam();
    for (const std::size_t longest : {1000u, 1u, 2u, 3u, 7u}) {
        EXPECT_EQ(Decode(c.bytes, c.encoding, c.codePage, longest), c.lines) << longest;
    }
}

constexpr TextEncoding utf8 = TextEncoding::Utf8;
constexpr TextEncoding little = TextEncoding::Utf16LittleEndian;
constexpr TextEncoding big = TextEncoding::Utf16BigEndian;
constexpr TextEncoding ansi = TextEncoding::CodePage;

INSTANTIATE_TEST_SUITE_P(
    Cases, LineDecoderText,
    testing::Values(
        DecodeCase{
            "Ends", utf8, 0, "a\nb\r\nc\rd\r\r\n\ne", {L"a", L"b", L"c", L"d", L"", L"", L"e"}},
        DecodeCase{"NoLineAfterTheLastEnd", utf8, 0, "a\r\n", {L"a"}},
        DecodeCase{"Empty", utf8, 0, "", {}},
        DecodeCase{"Tabs",
                   utf8,
                   0,
                   "\tx\n1234567\ty\n12345678\tz",
                   {L"        x", L"1234567 y", L"12345678        z"}},
        DecodeCase{"LengthsOfUtf8",
                   utf8,
                   0,
                   "\xC3\xA9|\xE2\x82\xAC|\xF0\x9F\x98\x80",
                   {L"\x00E9|\x20AC|\xD83D\xDE00"}},
        DecodeCase{"EachBadPartOfUtf8OnceReplaced",
                   utf8,
                   0,
                   "a\xF1\x80\x80\xE1\x80\xC2"
                   "b\x80"
                   "c\x80\xBF"
                   "d",
                   {L"a\xFFFD\xFFFD\xFFFD"
                    L"b\xFFFD"
                    L"c\xFFFD\xFFFD"
                    L"d"}},
        DecodeCase{"OverlongAndSurrogateUtf8",
                   utf8,
                   0,
                   "\xC0\xAF|\xED\xA0\x80|\xF5",
                   {L"\xFFFD\xFFFD|\xFFFD\xFFFD\xFFFD|\xFFFD"}},
        DecodeCase{"CharacterCutByTheEnd", utf8, 0, "a\xE2\x82", {L"a\xFFFD"}},
        DecodeCase{"LineEndInsideACharacter", utf8, 0, "\xE2\x82\nb", {L"\xFFFD", L"b"}},
        DecodeCase{"Harmless",
                   utf8,
                   0,
                   "\x1B[0m\x07\x7F\xC2\x85|\xE2\x80\xAE\xE2\x81\xA6\xE2\x80\x8E"sv,
                   {L"\x00B7[0m\x00B7\x00B7\x00B7|\x00B7\x00B7\x00B7"}},
        DecodeCase{"ZeroByte",
                   utf8,
                   0,
                   "a\0b"sv,
                   {L"a\x00B7"
                    L"b"}},
        DecodeCase{
            "LittleEndian", little, 0, "a\0\r\0\n\0\x3D\xD8\x00\xDE"sv, {L"a", L"\xD83D\xDE00"}},
        DecodeCase{"BigEndian", big, 0, "\0a\0\n\x20\xAC"sv, {L"a", L"\x20AC"}},
        DecodeCase{"HalfAUnit", little, 0, "a\0b"sv, {L"a\xFFFD"}},
        DecodeCase{"Western", ansi, 1252, "\x80\xE9\n\x93", {L"\x20AC\x00E9", L"\x201C"}},
        DecodeCase{"Japanese",
                   ansi,
                   932,
                   "\x83\x65\x83\x58|\xB1\n\x83",
                   {L"\x30C6\x30B9|\xFF71", L"\xFFFD"}},
        DecodeCase{"LineEndAfterAStrayFirstByte", ansi, 932, "a\x83\nb", {L"a\xFFFD", L"b"}}),
    CaseName());

// Text of everything that the decoder treats in a way of its own.
std::string MakeRandomBytes(std::size_t count)
{
    static constexpr std::string_view parts[] = {"plain text of some length, as most is",
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
                                                 "\x0D\x0A\x0A"};
    std::minstd_rand random(7);
    std::string text;
    while (text.size() < count) {
        text += parts[random() % std::size(parts)];
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

TEST(LineDecoder, ShowsTheUnfinishedLine)
{
    LineDecoder decoder(utf8);
    LineBatch batch;
    decoder.Decode(BytesOf("one\ntw"), 6, batch);
    EXPECT_EQ(TextOf(batch), Lines{L"one"});
    EXPECT_EQ(std::wstring_view(decoder.GetUnfinishedText(), decoder.GetUnfinishedLength()), L"tw");
}

struct EncodingCase
{
    const char* name;
    std::string_view bytes;
    TextEncoding encoding;
    std::size_t markLength;
};

class EncodingOf : public testing::TestWithParam<EncodingCase>
{};

TEST_P(EncodingOf, IsDetected)
{
    const EncodingCase& c = GetParam();
    const DetectedEncoding detected = DetectEncoding(BytesOf(c.bytes), c.bytes.size());
    EXPECT_EQ(detected.encoding, c.encoding);
    EXPECT_EQ(detected.markLength, c.markLength);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, EncodingOf,
    testing::Values(EncodingCase{"Mark8", "\xEF\xBB\xBFx", utf8, 3},
                    EncodingCase{"MarkLittle", "\xFF\xFEx\0"sv, little, 2},
                    EncodingCase{"MarkBig", "\xFE\xFF\0x"sv, big, 2},
                    EncodingCase{"ZerosLittle", "l\0o\0g\0\xAC\x20"sv, little, 0},
                    EncodingCase{"ZerosBig", "\0l\0o\0g\x20\xAC"sv, big, 0},
                    EncodingCase{"Ascii", "log", utf8, 0},
                    EncodingCase{"CutCharacter", "log \xE2\x82", utf8, 0},
                    EncodingCase{"Latin", "caf\xE9 ", ansi, 0},
                    EncodingCase{"OneZeroByte", "log\0 of bytes, with one zero"sv, utf8, 0}),
    CaseName());

struct RuleCase
{
    const char* name;
    std::wstring text;
    LineSeverity severity;
};

class LineRule : public testing::TestWithParam<RuleCase>
{};

TEST_P(LineRule, Classifies)
{
    const RuleCase& c = GetParam();
    const LineAttributes* const attributes = ClassifyLine(c.text.data(), c.text.size());
    EXPECT_EQ(attributes ? attributes->severity : LineSeverity::Plain, c.severity);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, LineRule,
    testing::Values(RuleCase{"Plain", L"all is well", LineSeverity::Plain},
                    RuleCase{"Empty", L"", LineSeverity::Plain},
                    RuleCase{"AnyCase", L"[ErRoR] disk", LineSeverity::Error},
                    RuleCase{"AtTheEnd", L"it failed", LineSeverity::Error},
                    RuleCase{"WholeWordsOnly", L"terrors errorless unwarned", LineSeverity::Plain},
                    RuleCase{"Warning", L"12:00 WARN: low", LineSeverity::Warning},
                    RuleCase{"ErrorOutweighs", L"warning: fatal", LineSeverity::Error},
                    RuleCase{"TooFarBehind", std::wstring(200, L' ') + L"error",
                             LineSeverity::Plain}),
    CaseName());

}  // namespace
