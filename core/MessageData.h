#pragma once

#include <cstdint>

#include "core/MirelNamespace.h"
#include "core/WCFourCC.h"
#include "core/WTErrors.h"

MIREL_NAMESPACE_BEGIN

class cALGORITHM;
class WCCommandExecuterInterface;

// One message between plug-in instances: for whom, of which type, who carries it out, and its
// bytes. The buffer is the message's own copy, so the sender's memory may go as soon as the
// message is built. Copies copy the buffer; moves take it over. A message is used by one thread
// at a time: built by the sender, then handed to the thread that executes it.
class MessageData {
public:
    MessageData() noexcept = default;
    MessageData(cALGORITHM *target, WCFourCC messageType, WCCommandExecuterInterface *executer,
                bool lock) noexcept
        : m_target(target), m_messageType(messageType), m_executer(executer), m_lock(lock) {}
    ~MessageData();

    MessageData(MessageData const &other);
    MessageData &operator=(MessageData const &other);
    MessageData(MessageData &&other) noexcept;
    MessageData &operator=(MessageData &&other) noexcept;

    // Replaces the buffer with a copy of `size` bytes at `source`. A null source or a size of 0
    // leaves a null buffer of that size, so a null message reaches its handler as null.
    // eOutOfRangeNumber for a negative size, eMemOutOfMemory when the copy cannot be made; in
    // both cases the old buffer stays.
    WTErr CopyMessageBuffer(const void *source, std::int32_t size);

    // 0 when there is no executer, else the executer's result for this message.
    int execute();

    const char *GetBuffer() const noexcept { return m_buffer; }
    char *GetBuffer() noexcept { return m_buffer; }
    std::int32_t GetBufferSize() const noexcept { return m_bufferSize; }

    cALGORITHM *m_target = nullptr;
    WCFourCC m_messageType;
    WCCommandExecuterInterface *m_executer = nullptr;
    // Whether the receiver waits for the instance's lock, rather than giving up when it is busy.
    bool m_lock = false;

private:
    void FreeBuffer() noexcept;

    char *m_buffer = nullptr;
    std::int32_t m_bufferSize = 0;
};

MIREL_NAMESPACE_END
