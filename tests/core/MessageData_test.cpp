#include "core/MessageData.h"

#include <gtest/gtest.h>

#include <cstring>
#include <utility>

#include "core/WCCommandExecuterInterface.h"

namespace {

using namespace MIREL_NAMESPACE_NAME;

TEST(MessageData, BufferIsAPrivateCopyAndBadSizesKeepTheOldOne) {
    MessageData message;
    char source[] = "abc";
    ASSERT_EQ(eNoErr, message.CopyMessageBuffer(source, 3));
    source[0] = 'z';
    EXPECT_EQ(0, std::memcmp(message.GetBuffer(), "abc", 3));
    EXPECT_EQ(eOutOfRangeNumber, message.CopyMessageBuffer("lost", -1));
    EXPECT_EQ(3, message.GetBufferSize());
    EXPECT_EQ(0, std::memcmp(message.GetBuffer(), "abc", 3));
    ASSERT_EQ(eNoErr, message.CopyMessageBuffer(nullptr, 0)); // a null message stays null
    EXPECT_EQ(nullptr, message.GetBuffer());
    EXPECT_EQ(nullptr, MessageData(message).GetBuffer());
}

TEST(MessageData, CopiesOwnTheirBufferAndMovesTakeItOver) {
    MessageData original(nullptr, WCFourCC("Type"), nullptr, true);
    ASSERT_EQ(eNoErr, original.CopyMessageBuffer("12345", 5));
    MessageData copy(original);
    EXPECT_NE(original.GetBuffer(), copy.GetBuffer());
    EXPECT_EQ(0, std::memcmp(copy.GetBuffer(), "12345", 5));
    EXPECT_EQ(WCFourCC("Type"), copy.m_messageType);
    EXPECT_TRUE(copy.m_lock);

    char const *const owned = original.GetBuffer();
    MessageData moved(std::move(original));
    EXPECT_EQ(owned, moved.GetBuffer());
    EXPECT_EQ(nullptr, original.GetBuffer()); // NOLINT(bugprone-use-after-move)
    copy = moved;
    EXPECT_NE(moved.GetBuffer(), copy.GetBuffer());
    copy = std::move(moved);
    EXPECT_EQ(owned, copy.GetBuffer());
}

class WCEchoExecuter : public WCCommandExecuterInterface {
public:
    int ExecuteMessage(MessageData &data) override {
        seen = &data;
        return eFailedToLockAlg;
    }
    MessageData *seen = nullptr;
};

TEST(MessageData, ExecuteAsksTheExecuterOrAnswersZeroWithoutOne) {
    EXPECT_EQ(0, MessageData().execute());
    WCEchoExecuter executer;
    MessageData message(nullptr, WCFourCC("Exec"), &executer, false);
    EXPECT_EQ(eFailedToLockAlg, message.execute());
    EXPECT_EQ(&message, executer.seen);
}

} // namespace
