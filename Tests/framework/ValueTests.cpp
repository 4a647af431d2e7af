// Values of the framework: strings against a model.
#include "afx.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>

namespace {

std::wstring TextOf(const CString& string)
{
    return std::wstring(string.GetString(), string.GetLength());
}

}  // namespace

TEST(CStringTest, TakesArgumentsFromItself)
{
    CString text(L"abcdef");
    text = text.GetString() + 2;
    EXPECT_EQ(TextOf(text), L"cdef");
    for (int i = 0; i < 4; ++i) {
        text += text;
    }
    EXPECT_EQ(text.GetLength(), 64);
    text = L"x-x";
    text.Replace(text, L"<%s>");
    text.Format(text, text.GetString());
    EXPECT_EQ(TextOf(text), L"<<%s>>");
    text = L" .a. ";
    text.Trim(text.Left(2));
    EXPECT_EQ(TextOf(text), L"a");
}

TEST(CStringTest, FormatsAsWideAndTakesStringsAsTheyStand)
{
    const CString name(L"w\u00F6rld");
    CString text;
    text.Format(L"%s %d %hs %c %08.3f", name, -7, "narrow", L'\u20AC', 2.5);
    text.AppendFormat(L"|%5s|%s", L"ab", name);
    EXPECT_EQ(TextOf(text), L"w\u00F6rld -7 narrow \u20AC 0002.500|   ab|w\u00F6rld");
    text.Format(L"[%s]", std::wstring(5000, L'x').c_str());
    EXPECT_EQ(text.GetLength(), 5002);
}

namespace {

// A string and its model, changed alike at random.
class StringPair
{
public:
    explicit StringPair(unsigned seed) : random(seed) {}

    void Step()
    {
        switch (Below(9)) {
        case 0: Cut(Below(static_cast<unsigned>(model.size()) + 1), 40 + Below(40)); break;
        case 1: Replace(Word(), Word()); break;
        case 2: EXPECT_EQ(string.Remove(L'b'), static_cast<int>(std::erase(model, L'b'))); break;
        case 3: Trim(); break;
        case 4:
            earlier = string;
            earlierModel = model;
            break;
        default: Append(Word()); break;
        }
    }

    void Check() const
    {
        ASSERT_EQ(TextOf(string), model);
        ASSERT_EQ(TextOf(earlier), earlierModel);
        ASSERT_EQ(string.GetString()[string.GetLength()], L'\0');
        ASSERT_EQ(string.Find(L"ab", 1), static_cast<int>(model.find(L"ab", 1)));
        ASSERT_EQ(string.ReverseFind(L'a'), static_cast<int>(model.rfind(L'a')));
        ASSERT_EQ(string.FindOneOf(L"ba"), static_cast<int>(model.find_first_of(L"ba")));
    }

private:
    unsigned Below(unsigned limit) { return random() % limit; }

    // Of few letters, so that searches hit.
    std::wstring Word()
    {
        std::wstring word(Below(4), L' ');
        for (wchar_t& ch : word) {
            ch = L" ab"[Below(3)];
        }
        return word;
    }

    void Append(const std::wstring& word)
    {
        string += word.c_str();
        model += word;
    }

    void Cut(unsigned first, unsigned count)
    {
        string = string.Mid(first, count);
        model = model.substr(first, count);
    }

    void Replace(const std::wstring& part, const std::wstring& replacement)
    {
        int count = 0;
        for (std::size_t at = 0; !part.empty() && (at = model.find(part, at)) != std::wstring::npos;
             at += replacement.size(), ++count) {
            model.replace(at, part.size(), replacement);
        }
        EXPECT_EQ(string.Replace(part.c_str(), replacement.c_str()), count);
    }

    void Trim()
    {
        string.Trim();
        model.erase(0, std::min(model.find_first_not_of(L' '), model.size()));
        model.erase(model.find_last_not_of(L' ') + 1);
    }

    std::mt19937 random;
    CString string;
    CString earlier;  // shares with the string until that changes
    std::wstring model, earlierModel;
};

}  // namespace

TEST(CStringTest, AgreesWithAModelOverRandomChanges)
{
    for (unsigned seed = 1; seed <= 20; ++seed) {
        SCOPED_TRACE(seed);
        StringPair pair(seed);
        for (int i = 0; i < 1000 && !HasFatalFailure(); ++i) {
            pair.Step();
            pair.Check();
        }
    }
}

namespace {

class Animal : public CObject
{
    DECLARE_DYNAMIC(Animal)
};

template <class Base>
class Wrapper : public Base
{};

struct Marker
{
    virtual ~Marker() = default;
    int mark = 42;
};

class Dog : public Wrapper<Animal>, public Marker
{
    DECLARE_DYNCREATE(Dog)
};

class Hungry : public CObject
{
    DECLARE_DYNCREATE(Hungry)

    Hungry() { AfxThrowMemoryException(); }
};

IMPLEMENT_DYNAMIC(Animal, CObject)
IMPLEMENT_DYNCREATE(Dog, Wrapper<Animal>)
IMPLEMENT_DYNCREATE(Hungry, CObject)

}  // namespace
