#include "textview/YTextViewHighlight.h"

#include "YNpos.h"
#include "YUnknownPointer.h"
#include "textview/ITextViewHighlightSink.h"

#include <gtest/gtest.h>

namespace {

using Position = YTextViewCharPosition;
using Pointer = YUnknownPointer<YTextViewHighlight>;

class CountingSink final : public ITextViewHighlightSink
{
public:
    void OnHighlightChange() override { ++changes; }

    int changes = 0;
};

}  // namespace

TEST(YTextViewHighlight, FollowsTheTextThatScrolls)
{
    const struct
    {
        Position begin, end;
        unsigned lines;
        bool stays;
        Position newBegin, newEnd;
    } cases[] = {{{1, 5}, {2, 7}, 5, true, {1, 0}, {2, 2}},
                 {{1, 5}, {2, 7}, 6, true, {0, 0}, {2, 1}},
                 {{1, 5}, {2, 7}, 8, false, {1, 5}, {2, 7}},
                 {{1, 7}, {2, 5}, 6, true, {1, 1}, {0, 0}},
                 {{1, 1}, {2, npos}, 2, true, {0, 0}, {2, npos - 2}}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message()
                     << c.begin.line << " to " << c.end.line << " by " << c.lines);
        CountingSink sink;
        const auto highlight = Pointer::Make(&sink, c.begin, c.end);
        EXPECT_EQ(highlight->Scroll(c.lines), c.stays);
        EXPECT_EQ(highlight->GetBegin(), c.newBegin);
        EXPECT_EQ(highlight->GetEnd(), c.newEnd);
        EXPECT_EQ(sink.changes, 0);
    }
}
