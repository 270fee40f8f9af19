#include "core/MessageData.h"

#include <gtest/gtest.h>

#include <cstring>
#include <utility>

#include "core/WCCommandExecuterInterface.h"

namespace {

using namespace MIREL_NAMESPACE_NAME;

TEST(MessageData, CopyMessageBufferKeepsAPrivateCopy) {
    MessageData message;
    char source[] = "abc";
    ASSERT_EQ(eNoErr, message.CopyMessageBuffer(source, 3));
    source[0] = 'z';
    ASSERT_NE(nullptr, message.GetBuffer());
    EXPECT_EQ(3, message.GetBufferSize());
    EXPECT_EQ(0, std::memcmp(message.GetBuffer(), "abc", 3));
}

TEST(MessageData, NullBufferStaysNull) {
    MessageData message;
    ASSERT_EQ(eNoErr, message.CopyMessageBuffer("x", 1));
    ASSERT_EQ(eNoErr, message.CopyMessageBuffer(nullptr, 0));
    EXPECT_EQ(nullptr, message.GetBuffer());
    EXPECT_EQ(0, message.GetBufferSize());
    MessageData copy(message);
    EXPECT_EQ(nullptr, copy.GetBuffer());
}

TEST(MessageData, NegativeSizeIsRefusedAndTheOldBufferStays) {
    MessageData message;
    ASSERT_EQ(eNoErr, message.CopyMessageBuffer("keep", 4));
    EXPECT_EQ(eOutOfRangeNumber, message.CopyMessageBuffer("lost", -1));
    EXPECT_EQ(4, message.GetBufferSize());
    EXPECT_EQ(0, std::memcmp(message.GetBuffer(), "keep", 4));
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
    EXPECT_EQ(0, original.GetBufferSize());

    copy = moved; // copy-assign over an existing buffer
    EXPECT_NE(moved.GetBuffer(), copy.GetBuffer());
    EXPECT_EQ(0, std::memcmp(copy.GetBuffer(), "12345", 5));
    copy = std::move(moved);
    EXPECT_EQ(owned, copy.GetBuffer());
}

class WCEchoExecuter : public WCCommandExecuterInterface {
public:
    int ExecuteMessage(MessageData &data) override {
        seen = &data;
        return result;
    }
    MessageData *seen = nullptr;
    int result = 0;
};

TEST(MessageData, ExecuteAsksTheExecuterOrAnswersZeroWithoutOne) {
    MessageData orphan;
    EXPECT_EQ(0, orphan.execute());

    WCEchoExecuter executer;
    executer.result = eFailedToLockAlg;
    MessageData message(nullptr, WCFourCC("Exec"), &executer, false);
    EXPECT_EQ(eFailedToLockAlg, message.execute());
    EXPECT_EQ(&message, executer.seen);
}

} // namespace
