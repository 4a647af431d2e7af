// Sockets of ours over the real loopback: what is asked is answered, whatever happens meanwhile.
#include "SocketKit.h"
#include "support/LeakCheck.h"

namespace {

class SocketTest : public testing::TestWithParam<int>  // a family
{};

TEST_P(SocketTest, TalksBothWays)
{
    Connection pair(GetParam());
    ASSERT_TRUE(pair.server.socket);
    for (const auto& [from, to] :
         {std::pair(&pair.client, &pair.server), std::pair(&pair.server, &pair.client)}) {
        from->socket->Write(Context(3), MakeBytes("a line of text").Get());
        to->socket->Read(Context(4), MakeRoom(100).Get());
        ASSERT_TRUE(from->sink->WaitForCount(1) && to->sink->WaitForCount(1));
        EXPECT_EQ(to->sink->received, "a line of text");
        EXPECT_EQ(from->sink->answers, (std::vector<SocketAnswer>{{"write", Context(3), 0, 14}}));
        from->sink->answers.clear();
        to->sink->answers.clear();
    }
    // The end of the stream is told once.
    pair.server.socket->Shutdown(SD_SEND);
    pair.client.socket->Read(Context(5), MakeRoom(1).Get());
    pair.client.socket->Read(Context(6), MakeRoom(1).Get());
    ASSERT_TRUE(pair.client.sink->WaitForCount(2));
    EXPECT_EQ(pair.client.sink->answers,
              (std::vector<SocketAnswer>{{"read", Context(5), 0, 0},
                                         {"read", Context(6), ERROR_OPERATION_ABORTED, 0}}));
}

INSTANTIATE_TEST_SUITE_P(Families, SocketTest, testing::Values(AF_INET, AF_INET6));

}  // namespace
