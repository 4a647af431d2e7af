#include "YUnknown.h"
#include "YUnknownPointer.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

class Object : public YUnknown<>
{
public:
    explicit Object(int& liveObjects) : live(liveObjects) { ++live; }
    ~Object() override { --live; }

private:
    int& live;
};

using Pointer = YUnknownPointer<Object>;

}  // namespace

TEST(YUnknown, TheSlotsStandInTheirOrder)
{
    int live = 0;
    const Pointer object = Pointer::Make(live);
    using Slot = ULONG(STDMETHODCALLTYPE*)(void*);
    const Slot* const slots = *reinterpret_cast<Slot**>(object.Get());
    EXPECT_EQ(slots[1](object.Get()), 2u);  // AddRef
    EXPECT_EQ(slots[2](object.Get()), 1u);  // Release
    EXPECT_EQ(slots[3](object.Get()), 2u);  // AddRef const: IUnknown has no operations of its own
    EXPECT_EQ(slots[4](object.Get()), 1u);  // Release const
}

TEST(YUnknownPointer, OwnsOneReferencePerPointer)
{
    int live = 0;
    auto* const object = new Object(live);
    Pointer first = Pointer::Adopt(object);
    Pointer second = first;
    const Pointer third(object);
    EXPECT_EQ(object->AddRef(), 4u);
    object->Release();

    Pointer moved = std::move(second);
    EXPECT_FALSE(second);
    EXPECT_TRUE(moved == third);
    EXPECT_TRUE(second == nullptr);
    moved = moved;  // NOLINT: that is the case
    EXPECT_TRUE(moved == object);

    Object* const detached = first.Detach();
    moved.Reset();
    EXPECT_EQ(detached->Release(), 1u);
    EXPECT_EQ(live, 1);
}

// A new value may be owned by the old one.
TEST(YUnknownPointer, AssignmentKeepsTheNewBeforeItReleasesTheOld)
{
    struct Node : YUnknown<>
    {
        YUnknownPointer<Node> next;
    };
    auto list = YUnknownPointer<Node>::Make();
    list->next = YUnknownPointer<Node>::Make();
    list = list->next;
    EXPECT_TRUE(list);
    EXPECT_TRUE(list->next == nullptr);
}
