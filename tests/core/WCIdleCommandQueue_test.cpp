#include "core/WCIdleCommandQueue.h"

#include <gtest/gtest.h>

#include <cstring>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "core/MessageData.h"
#include "core/WCCommandExecuterInterface.h"
#include "tests/support/WCCountingAllocator.h"

namespace {

using namespace MIREL_NAMESPACE_NAME;
using MIREL_NAMESPACE_NAME::miThread::WCIdleCommandQueue;
using mirel_test::AllocationsSoFar;
using mirel_test::CountAllocations;

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
using WTSeqQueue = WCIdleCommandQueue<WSSeqMessage, 1024, 1>;

std::vector<int> Range(int from, int to) {
    std::vector<int> out;
    for (int i = from; i < to; ++i)
        out.push_back(i);
    return out;
}

TEST(WCIdleCommandQueue, ChainsABiggerBlockOnlyWhenAllBlocksAreInUse) {
    std::vector<int> done;
    done.reserve(2000);  // the record of what ran must not allocate while counting
    WTSeqQueue queue(3); // rounds up to 4
    EXPECT_EQ(0u, queue.GetBlockCount());
    const long start = AllocationsSoFar();
    int seq = 0;
    for (; seq < 4; ++seq)
        ASSERT_EQ(eNoErr, queue.Push(WSSeqMessage{seq, 0, &done}));
    EXPECT_EQ(1u, queue.GetBlockCount());
    EXPECT_EQ(1, AllocationsSoFar() - start);
    // The fifth message opens a block of 8 (messages 4..11); the 13th a block of 16.
    for (; seq < 12; ++seq)
        ASSERT_EQ(eNoErr, queue.Push(WSSeqMessage{seq, 0, &done}));
    EXPECT_EQ(2u, queue.GetBlockCount());
    ASSERT_EQ(eNoErr, queue.Push(WSSeqMessage{seq++, 0, &done}));
    EXPECT_EQ(3u, queue.GetBlockCount());
    EXPECT_EQ(3, AllocationsSoFar() - start);
    EXPECT_EQ(13u, queue.DoIdle());

    // Rounds of up to 28 messages now go round the ring of three blocks without allocating.
    EXPECT_EQ(0, CountAllocations([&] {
                  for (int round = 0; round < 50; ++round) {
                      for (int i = 0; i < 28; ++i, ++seq)
                          queue.Push(WSSeqMessage{seq, 0, &done});
                      queue.DoIdle();
                  }
              }));
    EXPECT_EQ(3u, queue.GetBlockCount());
    EXPECT_EQ(Range(0, seq), done);
}

TEST(WCIdleCommandQueue, InterleavedPushAndPopKeepOrderAcrossBlocks) {
    WTSeqQueue queue(2);
    int next = 0;
    int expected = 0;
    for (int step = 0; step < 5000; ++step) {
        // Push two, pop one or two, so head and tail cross blocks at different moments.
        queue.Push(WSSeqMessage{next++, 0, nullptr});
        queue.Push(WSSeqMessage{next++, 0, nullptr});
        for (int k = 0; k < (step % 3 == 0 ? 2 : 1); ++k) {
            ASSERT_NE(nullptr, queue.Front());
            ASSERT_EQ(expected++, queue.Front()->seq);
            ASSERT_TRUE(queue.Pop());
        }
    }
    for (; queue.Front() != nullptr; queue.Pop())
        ASSERT_EQ(expected++, queue.Front()->seq);
    EXPECT_EQ(next, expected);
    EXPECT_FALSE(queue.Pop());
}

TEST(WCIdleCommandQueue, OnePassTakesAtMostItsLimit) {
    std::vector<int> done;
    WTSeqQueue queue(64);
    for (int i = 0; i < 3000; ++i)
        queue.Push(WSSeqMessage{i, 0, &done});
    EXPECT_EQ(1024u, queue.DoIdle());
    EXPECT_EQ(1024u, done.size());
    EXPECT_EQ(1024u, queue.DoIdle());
    EXPECT_EQ(952u, queue.DoIdle());
    EXPECT_EQ(0u, queue.DoIdle());
    EXPECT_EQ(Range(0, 3000), done);
}

TEST(WCIdleCommandQueue, BusyHeadStaysInPlaceAndEndsThePass) {
    std::vector<int> done;
    WTSeqQueue queue(4);
    queue.Push(WSSeqMessage{0, 0, &done});
    queue.Push(WSSeqMessage{1, 0, &done});
    queue.Push(WSSeqMessage{2, 2, &done}); // busy for two passes
    queue.Push(WSSeqMessage{3, 0, &done});
    EXPECT_EQ(2u, queue.DoIdle());
    WSSeqMessage *const head = queue.Front();
    ASSERT_NE(nullptr, head);
    EXPECT_EQ(2, head->seq);
    EXPECT_EQ(0u, queue.DoIdle()); // nothing behind it runs either
    EXPECT_EQ(head, queue.Front());
    EXPECT_EQ(2u, queue.DoIdle());
    EXPECT_EQ(Range(0, 4), done);
    EXPECT_TRUE(queue.IsEmpty());
}

// Counts live messages, so leaks and double destruction show; can refuse to copy or to run.
struct WSCountedMessage {
    static inline int live = 0;
    static inline bool throwOnCopy = false;
    static inline int executeBudget = -1; // runs left before one throws; -1 never throws
    explicit WSCountedMessage(int) { ++live; }
    WSCountedMessage(WSCountedMessage const &) {
        if (throwOnCopy)
            throw std::runtime_error("copy refused");
        ++live;
    }
    ~WSCountedMessage() { --live; }
    bool execute() {
        if (executeBudget == 0)
            throw std::runtime_error("run refused");
        if (executeBudget > 0)
            --executeBudget;
        return false;
    }
};

TEST(WCIdleCommandQueue, ThrowingMessagesLeaveTheQueueWhole) {
    {
        WCIdleCommandQueue<WSCountedMessage, 1024, 1> queue(2);
        WSCountedMessage const original(7);
        queue.Push(original);
        queue.Push(original);
        WSCountedMessage::throwOnCopy = true;
        EXPECT_THROW(queue.Push(original), std::runtime_error); // while chaining a block
        WSCountedMessage::throwOnCopy = false;
        EXPECT_EQ(1u, queue.GetBlockCount());
        for (int i = 0; i < 18; ++i)
            queue.Emplace(i);
        EXPECT_EQ(21, WSCountedMessage::live);

        WSCountedMessage::executeBudget = 3; // the fourth, inside the second block, throws
        EXPECT_THROW(queue.DoIdle(), std::runtime_error);
        EXPECT_EQ(18, WSCountedMessage::live); // the three before it are gone, it stays
        EXPECT_THROW(queue.DoIdle(), std::runtime_error);
        WSCountedMessage::executeBudget = -1;
        EXPECT_EQ(18, WSCountedMessage::live);
    } // the queue destroys what is left, across its blocks
    EXPECT_EQ(0, WSCountedMessage::live);
}

// The producer pushes `count` numbered messages, every 97th busy once, while the consumer runs
// idle passes until it has seen them all: in order, nothing lost, nothing twice.
void RunProducerConsumer(std::size_t initialCapacity, int count) {
    std::vector<int> done;
    done.reserve(static_cast<std::size_t>(count));
    WTSeqQueue queue(initialCapacity);
    std::thread producer([&] {
        for (int i = 0; i < count; ++i) {
            ASSERT_EQ(eNoErr, queue.Push(WSSeqMessage{i, i % 97 == 0 ? 1 : 0, &done}));
            if (i % 4096 == 0)
                std::this_thread::yield();
        }
    });
    std::size_t largestPass = 0;
    for (std::size_t total = 0; total < static_cast<std::size_t>(count);) {
        std::size_t const pass = queue.DoIdle();
        largestPass = std::max(largestPass, pass);
        total += pass;
        if (pass == 0)
            std::this_thread::yield();
    }
    producer.join();
    EXPECT_LE(largestPass, 1024u);
    EXPECT_TRUE(queue.IsEmpty());
    ASSERT_EQ(static_cast<std::size_t>(count), done.size());
    for (int i = 0; i < count; ++i)
        ASSERT_EQ(i, done[static_cast<std::size_t>(i)]) << "at " << i;
}

TEST(WCIdleCommandQueueThreads, BlocksChainAndCycleWithoutLossOrDuplicatesUnderLoad) {
    for (std::size_t initialCapacity : {2u, 1024u}) {
        SCOPED_TRACE(initialCapacity);
        RunProducerConsumer(initialCapacity, 200000);
    }
}

class WCRecordingExecuter : public WCCommandExecuterInterface {
public:
    int ExecuteMessage(MessageData &data) override {
        if (busy > 0 && busy--)
            return eFailedToLockAlg;
        texts.emplace_back(
            data.GetBuffer() != nullptr
                ? std::string(data.GetBuffer(), static_cast<std::size_t>(data.GetBufferSize()))
                : std::string("<null>"));
        return 0;
    }
    int busy = 0;
    std::vector<std::string> texts;
};

TEST(WCIdleCommandQueueMessages, CarriesPrivateCopiesAndRetriesBusyReceivers) {
    WCRecordingExecuter executer;
    WCIdleCommandQueue<MessageData, 1024, 1> queue;
    queue.Push(MessageData()); // the first block, made before counting
    queue.DoIdle();

    char text[] = "hello";
    MessageData first(nullptr, WCFourCC("Ping"), &executer, false);
    ASSERT_EQ(eNoErr, first.CopyMessageBuffer(text, 5));
    int pushed = eGenericErr;
    // The buffer moves, no copy.
    EXPECT_EQ(0, CountAllocations([&] { pushed = queue.Push(std::move(first)); }));
    ASSERT_EQ(eNoErr, pushed);
    std::memcpy(text, "xxxxx", 5); // the sender's memory may change at once
    queue.Push(MessageData(nullptr, WCFourCC("Null"), &executer, false));
    queue.Push(MessageData(nullptr, WCFourCC("Gone"), nullptr, false)); // no executer: done

    executer.busy = 1; // the receiver's lock is taken for one pass
    EXPECT_EQ(0u, queue.DoIdle());
    EXPECT_EQ(3u, queue.DoIdle());
    EXPECT_EQ((std::vector<std::string>{"hello", "<null>"}), executer.texts);
}

} // namespace
