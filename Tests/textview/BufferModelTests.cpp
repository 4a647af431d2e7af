// The buffer against a model that follows its rules and not its code.

#include "textview/Lines.h"
#include "textview/YTextViewBuffer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace {

struct ModelLine
{
    std::wstring text;
    const void* attributes = nullptr;

    bool operator==(const ModelLine&) const = default;
};

ModelLine ToModel(const YTextViewBuffer::LineInfo& line)
{
    return {{line.text.begin(), line.text.end()}, line.attributes};
}

class Model
{
public:
    explicit Model(unsigned capacity) : slots(capacity) {}

    unsigned GetCapacity() const { return static_cast<unsigned>(slots.size()); }
    unsigned GetCount() const { return count; }
    unsigned GetMaxLength() const { return maxLength; }
    const ModelLine& At(unsigned line) const { return slots[(head + line) % slots.size()]; }
    bool Wraps() const { return head + count > GetCapacity(); }

    // Returns how many lines were lost.
    unsigned Append(const std::vector<ModelLine>& lines)
    {
        const auto before = count;
        const std::size_t wanted = count + lines.size();
        const std::size_t lost =
            std::min<std::size_t>(count, wanted > slots.size() ? wanted - slots.size() : 0);
        if (lost > 0) {
            DropOldest(static_cast<unsigned>(lost));
        }
        const std::size_t first = lines.size() > slots.size() ? lines.size() - slots.size() : 0;
        for (std::size_t i = first; i < lines.size(); ++i) {
            Put(lines[i]);
        }
        return static_cast<unsigned>(before - (count - (lines.size() - first)));
    }

    bool Resize(unsigned size)
    {
        const unsigned capacity = GetCapacity();
        const bool dropped = size < count;
        if (size == capacity) {
            return false;
        }
        if (dropped) {
            DropOldest(count - size);
        }
        if (head != 0) {
            MoveLines(size);
        }
        slots.resize(size);
        return dropped;
    }

    void Clear() { DropOldestWithoutScan(count); }

    void ClearLast()
    {
        Slot(count - 1) = {};
        --count;
    }

private:
    ModelLine& Slot(unsigned line) { return slots[(head + line) % slots.size()]; }

    void Put(const ModelLine& line)
    {
        const unsigned slot = (head + count) % GetCapacity();
        slots[slot] = line;
        ++count;
        if (line.text.size() >= maxLength) {
            maxLength = static_cast<unsigned>(line.text.size());
            record = static_cast<int>(slot);
        }
    }

    void DropOldestWithoutScan(unsigned lines)
    {
        for (; lines > 0; --lines) {
            if (record == static_cast<int>(head)) {
                record = -1;
                maxLength = 0;
            }
            slots[head] = {};
            head = (head + 1) % GetCapacity();
            --count;
        }
    }

    void DropOldest(unsigned lines)
    {
        DropOldestWithoutScan(lines);
        if (record >= 0) {
            return;
        }
        std::size_t greatest = 0;
        int holder = -1;
        for (unsigned i = 0; i < count; ++i) {
            if (At(i).text.size() >= greatest) {
                greatest = At(i).text.size();
                holder = static_cast<int>((head + i) % GetCapacity());
            }
        }
        if (greatest != maxLength) {
            maxLength = static_cast<unsigned>(greatest);
            record = holder;
        }
    }

    // A move leaves the source as it is. Into an array with room for both sizes.
    void MoveLines(unsigned size)
    {
        const unsigned capacity = GetCapacity();
        const std::vector<ModelLine> old = slots;
        slots.resize(std::max(capacity, size));
        const bool endFree = head + count < capacity;
        const unsigned run = endFree ? count : capacity - head;
        unsigned target = 0;
        if (!endFree) {
            target = size > capacity ? size - run : count - run;
        }
        for (unsigned i = 0; i < run; ++i) {
            slots[target + i] = old[head + i];
        }
        if (record >= static_cast<int>(head) && record < static_cast<int>(head + run)) {
            record += static_cast<int>(target) - static_cast<int>(head);
        }
        head = target;
    }

    std::vector<ModelLine> slots;
    unsigned head = 0;
    unsigned count = 0;
    unsigned maxLength = 0;
    int record = -1;  // the slot of the longest line; -1: not known
};

// What a copy must give, written out of the list of lines.
std::wstring WholeText(const Model& model)
{
    if (model.GetCount() == 1) {
        return model.At(0).text;
    }
    std::wstring text;
    for (unsigned i = 0; i < model.GetCount(); ++i) {
        const std::wstring& line = model.At(i).text;
        text += i == 0 && line.empty() ? L"" : line + L"\r\n";
    }
    return text;
}

constexpr unsigned left = 1;  // of the rectangle that is copied
constexpr unsigned right = 4;  // exclusive

// A rectangle over all lines; nothing where the copy is refused: the last line must reach into it.
std::optional<std::wstring> RectangleText(const Model& model)
{
    std::wstring text;
    for (unsigned i = 0; i < model.GetCount(); ++i) {
        const std::wstring& line = model.At(i).text;
        std::wstring field = line.size() > left ? line.substr(left, right - left) : L"";
        const bool last = i + 1 == model.GetCount();
        if (!last) {
            field.resize(right - left);
        } else if (line.size() < left) {
            return std::nullopt;
        }
        text += field + L"\r\n";
    }
    return text;
}

int attributeA = 0;
int attributeB = 0;

enum Step { AppendShort, AppendLong, AppendBatch, Shrink, Grow, ClearAll, ClearLine };
constexpr int stepCount = 7;

// A buffer and its model, going through the same steps.
class Pair
{
public:
    explicit Pair(unsigned capacity) : buffer(capacity), model(capacity) {}

    void Take(Step step)
    {
        switch (step) {
        case AppendShort: Append({Line(L"ab", &attributeA)}); break;
        case AppendLong: Append({Line(L"abcdef", &attributeB)}); break;
        case AppendBatch: Append({Line(L"x"), Line(L""), Line(L"xyz", &attributeA)}); break;
        case Shrink: Resize(model.GetCapacity() - 1); break;
        case Grow: Resize(model.GetCapacity() + 2); break;
        case ClearAll: Clear(); break;
        case ClearLine: ClearLast(); break;
        }
    }

    void Append(const std::vector<YTextViewBuffer::LineInfo>& lines)
    {
        const unsigned count = model.GetCount();
        const unsigned length = model.GetMaxLength();
        std::vector<ModelLine> modelLines;
        for (const auto& line : lines) {
            modelLines.push_back(ToModel(line));
        }
        const unsigned expected = model.Append(modelLines);
        unsigned removed = npos;
        const bool changed =
            buffer.AppendLines(lines.data(), static_cast<unsigned>(lines.size()), removed);
        same = same && removed == expected &&
               changed == (count != model.GetCount() || length != model.GetMaxLength());
    }

    void Resize(unsigned size)
    {
        if (size > 0) {
            const bool dropped = model.Resize(size);
            same = same && buffer.SetBufferSize(size) == dropped;
        }
    }

    void Clear()
    {
        model.Clear();
        buffer.Clear();
    }

    void ClearLast()
    {
        if (model.GetCount() > 0) {
            model.ClearLast();
            buffer.ClearLastLine();
        }
    }

    // Every slot, held or not, the counts and the copy of everything.
    bool Agree() { return CountsAgree() && SlotsAgree() && CopyAgrees() && RectangleAgrees(); }

    // The same without the costly part.
    bool CountsAgree() const
    {
        return same && buffer.GetLineCount() == model.GetCount() &&
               buffer.GetMaxLineLength() == model.GetMaxLength();
    }

private:
    bool SlotsAgree() const
    {
        for (unsigned i = 0; i < model.GetCapacity(); ++i) {
            if (ToModel(buffer.GetLineInfo(i)) != model.At(i)) {
                return false;
            }
        }
        return true;
    }

    bool CopyAgrees()
    {
        const auto copy = Copy(buffer);
        return model.GetCount() == 0 ? !copy : copy == WholeText(model);
    }

    // A start column past its line means column 0, which is another rectangle: left out.
    bool RectangleAgrees()
    {
        if (model.GetCount() < 2 || model.At(0).text.size() < left) {
            return true;
        }
        const auto text = RectangleText(model);
        const bool throws = text && model.Wraps();
        try {
            return Copy(buffer, {0, left, npos, right, true}) == text && !throws;
        } catch (const YArrayOutOfRange&) {
            return throws;
        }
    }

    YTextViewBuffer buffer;
    Model model;
    bool same = true;  // every result so far
};

}  // namespace

class YTextViewBufferWords : public testing::TestWithParam<unsigned>
{
protected:
    // Takes every word that begins like this one, checked as a whole.
    void TryAll(std::vector<Step>& word, unsigned capacity)
    {
        Pair pair(capacity);
        for (const Step step : word) {
            pair.Take(step);
        }
        ASSERT_TRUE(pair.Agree()) << capacity << " slots: " << testing::PrintToString(word);
        if (word.size() == 6) {
            return;
        }
        for (int step = 0; step < stepCount && !HasFatalFailure(); ++step) {
            word.push_back(static_cast<Step>(step));
            TryAll(word, capacity);
            word.pop_back();
        }
    }
};

TEST_P(YTextViewBufferWords, AllOfUpToSixStepsAgreeWithTheModel)
{
    std::vector<Step> word;
    TryAll(word, GetParam());
}

INSTANTIATE_TEST_SUITE_P(Capacities, YTextViewBufferWords, testing::Range(1u, 6u));

class YTextViewBufferRandom : public testing::TestWithParam<unsigned>
{};

TEST_P(YTextViewBufferRandom, FiftyThousandStepsAgreeWithTheModel)
{
    const unsigned seed = GetParam();
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    const auto upTo = [&](unsigned limit) { return random() % (limit + 1); };
    Pair pair(1000);
    for (unsigned step = 0; step < 50'000; ++step) {
        const unsigned kind = upTo(999);
        if (kind < 900) {
            std::vector<YTextViewBuffer::LineInfo> lines(upTo(kind < 5 ? 1500 : 3));
            for (auto& line : lines) {
                line = Line(std::wstring(upTo(upTo(99) == 0 ? 500 : 40), L'x'), &attributeA);
            }
            pair.Append(lines);
        } else if (kind < 990) {
            pair.ClearLast();
        } else if (kind < 999) {
            pair.Resize(1 + upTo(1999));
        } else {
            pair.Clear();
        }
        ASSERT_TRUE(pair.CountsAgree()) << "step " << step;
        if (step % 500 == 0) {
            ASSERT_TRUE(pair.Agree()) << "step " << step;
        }
    }
    EXPECT_TRUE(pair.Agree());
}

INSTANTIATE_TEST_SUITE_P(Seeds, YTextViewBufferRandom, testing::Values(1u, 20'240'601u));
