#include "core/WCIdleCommandQueue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <climits>
#include <cstring>
#include <stdexcept>
#include <thread>
#include <vector>

#include "core/MessageData.h"
#include "core/WCCommandExecuterInterface.h"
#include "core/miThread.h"

namespace {

using namespace MIREL_NAMESPACE_NAME;
using MIREL_NAMESPACE_NAME::miThread::WCIdleCommandQueue;

// Records its number when done; answers "busy" (true) for its first `busyCalls` executions.
struct WSSeqMessage {
    int seq = 0;
    int busyCalls = 0;
    std::vector<int> *done = nullptr;

    bool execute() {
        if (busyCalls > 0) {
            --busyCalls;
            return true;
        }
        done->push_back(seq);
        return false;
    }
};

template <std::size_t kMaxPerIdle = 1024>
using WTSeqQueue = WCIdleCommandQueue<WSSeqMessage, kMaxPerIdle, 1>;

std::vector<int> Range(int from, int to) {
    std::vector<int> out;
    for (int i = from; i < to; ++i)
        out.push_back(i);
    return out;
}

// ---------------------------------------------------------------------------------------------
// One thread

TEST(WCIdleCommandQueue, EmptyQueueHasNoHeadAndAnEmptyPass) {
    WTSeqQueue<> queue;
    EXPECT_TRUE(queue.IsEmpty());
    EXPECT_EQ(nullptr, queue.Front());
    EXPECT_FALSE(queue.Pop());
    EXPECT_EQ(0u, queue.DoIdle());
    EXPECT_EQ(0u, queue.GetBlockCount()); // no block before the first push
}

TEST(WCIdleCommandQueue, ChainsABiggerBlockWhenTheBlockFills) {
    std::vector<int> done;
    WTSeqQueue<> queue(3); // rounds up to 4
    for (int i = 0; i < 4; ++i)
        ASSERT_EQ(eNoErr, queue.Push(WSSeqMessage{i, 0, &done}));
    EXPECT_EQ(1u, queue.GetBlockCount());
    ASSERT_EQ(eNoErr, queue.Push(WSSeqMessage{4, 0, &done}));
    EXPECT_EQ(2u, queue.GetBlockCount());
    // The second block holds 8: messages 4..11. The 13th message needs a third block.
    for (int i = 5; i < 12; ++i)
        ASSERT_EQ(eNoErr, queue.Push(WSSeqMessage{i, 0, &done}));
    EXPECT_EQ(2u, queue.GetBlockCount());
    ASSERT_EQ(eNoErr, queue.Push(WSSeqMessage{12, 0, &done}));
    EXPECT_EQ(3u, queue.GetBlockCount());

    EXPECT_EQ(13u, queue.DoIdle());
    EXPECT_EQ(Range(0, 13), done);
    EXPECT_TRUE(queue.IsEmpty());
}

TEST(WCIdleCommandQueue, ReusesDrainedBlocksInsteadOfChainingMore) {
    std::vector<int> done;
    WTSeqQueue<> queue(4);
    int seq = 0;
    // Fill 4 + 8 + 16 = 28 across three blocks, then drain.
    for (; seq < 28; ++seq)
        ASSERT_EQ(eNoErr, queue.Push(WSSeqMessage{seq, 0, &done}));
    ASSERT_EQ(3u, queue.GetBlockCount());
    queue.DoIdle();
    // Many more rounds of the same size go round the ring of three blocks.
    for (int round = 0; round < 50; ++round) {
        for (int i = 0; i < 28; ++i, ++seq)
            ASSERT_EQ(eNoErr, queue.Push(WSSeqMessage{seq, 0, &done}));
        EXPECT_EQ(28u, queue.DoIdle());
    }
    EXPECT_EQ(3u, queue.GetBlockCount());
    EXPECT_EQ(Range(0, seq), done);
}

TEST(WCIdleCommandQueue, InterleavedPushAndPopKeepOrderAcrossBlockBoundaries) {
    WTSeqQueue<> queue(2);
    int next = 0;
    int expected = 0;
    for (int step = 0; step < 5000; ++step) {
        // Push two, pop one (sometimes two), so the head and the tail cross blocks at different
        // moments.
        ASSERT_EQ(eNoErr, queue.Push(WSSeqMessage{next++, 0, nullptr}));
        ASSERT_EQ(eNoErr, queue.Push(WSSeqMessage{next++, 0, nullptr}));
        for (int k = 0; k < (step % 3 == 0 ? 2 : 1); ++k) {
            WSSeqMessage *head = queue.Front();
            ASSERT_NE(nullptr, head);
            ASSERT_EQ(expected++, head->seq);
            ASSERT_TRUE(queue.Pop());
        }
    }
    while (WSSeqMessage *head = queue.Front()) {
        ASSERT_EQ(expected++, head->seq);
        queue.Pop();
    }
    EXPECT_EQ(next, expected);
}

TEST(WCIdleCommandQueue, OnePassTakesAtMostItsLimit) {
    std::vector<int> done;
    WTSeqQueue<> queue(64);
    for (int i = 0; i < 3000; ++i)
        ASSERT_EQ(eNoErr, queue.Push(WSSeqMessage{i, 0, &done}));
    EXPECT_EQ(1024u, queue.DoIdle());
    EXPECT_EQ(1024u, done.size());
    EXPECT_EQ(1024u, queue.DoIdle());
    EXPECT_EQ(952u, queue.DoIdle());
    EXPECT_EQ(0u, queue.DoIdle());
    EXPECT_EQ(Range(0, 3000), done);

    WTSeqQueue<3> small;
    for (int i = 0; i < 7; ++i)
        ASSERT_EQ(eNoErr, small.Push(WSSeqMessage{i, 0, &done}));
    EXPECT_EQ(3u, small.DoIdle());
    EXPECT_EQ(3u, small.DoIdle());
    EXPECT_EQ(1u, small.DoIdle());
}

TEST(WCIdleCommandQueue, BusyHeadStaysInPlaceAndEndsThePass) {
    std::vector<int> done;
    WTSeqQueue<> queue(4);
    ASSERT_EQ(eNoErr, queue.Push(WSSeqMessage{0, 0, &done}));
    ASSERT_EQ(eNoErr, queue.Push(WSSeqMessage{1, 0, &done}));
    ASSERT_EQ(eNoErr, queue.Push(WSSeqMessage{2, 2, &done})); // busy for two passes
    ASSERT_EQ(eNoErr, queue.Push(WSSeqMessage{3, 0, &done}));

    EXPECT_EQ(2u, queue.DoIdle());
    EXPECT_EQ(Range(0, 2), done);
    WSSeqMessage *head = queue.Front();
    ASSERT_NE(nullptr, head);
    EXPECT_EQ(2, head->seq);

    EXPECT_EQ(0u, queue.DoIdle()); // still busy: nothing behind it runs either
    EXPECT_EQ(head, queue.Front());
    EXPECT_EQ(Range(0, 2), done);

    EXPECT_EQ(2u, queue.DoIdle());
    EXPECT_EQ(Range(0, 4), done);
    EXPECT_TRUE(queue.IsEmpty());
}

// Counts live messages so that leaks and double destruction show.
struct WSCountedMessage {
    static inline std::atomic<int> live{0};
    static inline bool throwOnCopy = false;
    int value;
    explicit WSCountedMessage(int v) : value(v) { ++live; }
    WSCountedMessage(WSCountedMessage const &other) : value(other.value) {
        if (throwOnCopy)
            throw std::runtime_error("copy refused");
        ++live;
    }
    ~WSCountedMessage() { --live; }
    bool execute() { return false; }
};

TEST(WCIdleCommandQueue, DestroysWhatIsLeftWhenItGoes) {
    WSCountedMessage::live = 0;
    {
        WCIdleCommandQueue<WSCountedMessage, 4, 1> queue(2);
        for (int i = 0; i < 20; ++i)
            ASSERT_EQ(eNoErr, queue.Emplace(i));
        EXPECT_EQ(20, WSCountedMessage::live.load());
        EXPECT_EQ(4u, queue.DoIdle());
        EXPECT_EQ(16, WSCountedMessage::live.load());
    }
    EXPECT_EQ(0, WSCountedMessage::live.load());
}

TEST(WCIdleCommandQueue, AFailingMessageConstructorLeavesTheQueueUnchanged) {
    WSCountedMessage::live = 0;
    {
        WCIdleCommandQueue<WSCountedMessage, 1024, 1> queue(2);
        WSCountedMessage const original(7);
        ASSERT_EQ(eNoErr, queue.Push(original));
        ASSERT_EQ(eNoErr, queue.Push(original));
        WSCountedMessage::throwOnCopy = true;
        // Once into a full block (chaining path) and once more into the fresh one.
        EXPECT_THROW(queue.Push(original), std::runtime_error);
        WSCountedMessage::throwOnCopy = false;
        EXPECT_EQ(1u, queue.GetBlockCount());
        ASSERT_EQ(eNoErr, queue.Push(original));
        WSCountedMessage::throwOnCopy = true;
        EXPECT_THROW(queue.Push(original), std::runtime_error);
        WSCountedMessage::throwOnCopy = false;
        EXPECT_EQ(3u, queue.DoIdle());
        EXPECT_TRUE(queue.IsEmpty());
        EXPECT_EQ(1, WSCountedMessage::live.load());
    }
    EXPECT_EQ(0, WSCountedMessage::live.load());
}

// ---------------------------------------------------------------------------------------------
// Two threads

// The producer pushes `count` numbered messages, every 97th busy once, while the consumer runs
// idle passes until it has seen them all.
void RunProducerConsumer(std::size_t initialCapacity, int count) {
    std::vector<int> done;
    done.reserve(static_cast<std::size_t>(count));
    WTSeqQueue<> queue(initialCapacity);
    std::atomic<bool> pushFailed{false};

    std::thread producer([&] {
        for (int i = 0; i < count; ++i) {
            if (queue.Push(WSSeqMessage{i, i % 97 == 0 ? 1 : 0, &done}) != eNoErr)
                pushFailed = true;
            if (i % 4096 == 0)
                std::this_thread::yield(); // let the consumer catch up now and then
        }
    });

    std::size_t largestPass = 0;
    std::size_t total = 0;
    while (total < static_cast<std::size_t>(count) && !pushFailed) {
        std::size_t const pass = queue.DoIdle();
        largestPass = std::max(largestPass, pass);
        total += pass;
        if (pass == 0)
            std::this_thread::yield();
    }
    producer.join();

    EXPECT_FALSE(pushFailed.load());
    EXPECT_LE(largestPass, 1024u);
    EXPECT_EQ(0u, queue.DoIdle());
    ASSERT_EQ(static_cast<std::size_t>(count), done.size());
    // In order, nothing lost, nothing twice.
    for (int i = 0; i < count; ++i)
        ASSERT_EQ(i, done[static_cast<std::size_t>(i)]) << "at " << i;
}

TEST(WCIdleCommandQueueThreads, SmallBlocksChainAndCycleWithoutLossOrDuplicates) {
    RunProducerConsumer(2, 200000);
}

TEST(WCIdleCommandQueueThreads, DefaultBlocksKeepOrderUnderLoad) {
    RunProducerConsumer(1024, 200000);
}

// ---------------------------------------------------------------------------------------------
// With the real message record

class WCRecordingExecuter : public WCCommandExecuterInterface {
public:
    int ExecuteMessage(MessageData &data) override {
        if (busy > 0) {
            --busy;
            return eFailedToLockAlg;
        }
        types.push_back(data.m_messageType);
        texts.emplace_back(
            data.GetBuffer() != nullptr
                ? std::string(data.GetBuffer(), static_cast<std::size_t>(data.GetBufferSize()))
                : std::string("<null>"));
        return 0;
    }
    int busy = 0;
    std::vector<WCFourCC> types;
    std::vector<std::string> texts;
};

TEST(WCIdleCommandQueueMessages, CarriesPrivateCopiesAndRetriesBusyReceivers) {
    WCRecordingExecuter executer;
    WCIdleCommandQueue<MessageData, 1024, 1> queue;

    char text[] = "hello";
    MessageData first(nullptr, WCFourCC("Ping"), &executer, false);
    ASSERT_EQ(eNoErr, first.CopyMessageBuffer(text, 5));
    ASSERT_EQ(eNoErr, queue.Push(std::move(first)));
    std::memcpy(text, "xxxxx", 5); // the sender's memory may change at once

    MessageData nullMessage(nullptr, WCFourCC("Null"), &executer, false);
    ASSERT_EQ(eNoErr, nullMessage.CopyMessageBuffer(nullptr, 0));
    ASSERT_EQ(eNoErr, queue.Push(nullMessage));

    // No executer: done at once, with nothing recorded.
    ASSERT_EQ(eNoErr, queue.Push(MessageData(nullptr, WCFourCC("Gone"), nullptr, false)));

    executer.busy = 1; // the receiver is busy for one pass (the lock was taken)
    EXPECT_EQ(0u, queue.DoIdle());
    EXPECT_TRUE(executer.types.empty());
    EXPECT_EQ(3u, queue.DoIdle());
    ASSERT_EQ(2u, executer.types.size());
    EXPECT_EQ(WCFourCC("Ping"), executer.types[0]);
    EXPECT_EQ("hello", executer.texts[0]);
    EXPECT_EQ(WCFourCC("Null"), executer.types[1]);
    EXPECT_EQ("<null>", executer.texts[1]);
}

} // namespace
