#include "core/MessageData.h"

#include <cstring>
#include <new>
#include <utility>

#include "core/WCCommandExecuterInterface.h"

MIREL_NAMESPACE_BEGIN

MessageData::~MessageData() {
    FreeBuffer();
}

MessageData::MessageData(MessageData const &other)
    : m_target(other.m_target), m_messageType(other.m_messageType), m_executer(other.m_executer),
      m_lock(other.m_lock) {
    if (other.m_buffer != nullptr) {
        m_buffer = new char[static_cast<std::size_t>(other.m_bufferSize)];
        std::memcpy(m_buffer, other.m_buffer, static_cast<std::size_t>(other.m_bufferSize));
    }
    m_bufferSize = other.m_bufferSize;
}

MessageData &MessageData::operator=(MessageData const &other) {
    if (this != &other) {
        MessageData copy(other);
        *this = std::move(copy);
    }
    return *this;
}

MessageData::MessageData(MessageData &&other) noexcept
    : m_target(other.m_target), m_messageType(other.m_messageType), m_executer(other.m_executer),
      m_lock(other.m_lock), m_buffer(std::exchange(other.m_buffer, nullptr)),
      m_bufferSize(std::exchange(other.m_bufferSize, 0)) {}

MessageData &MessageData::operator=(MessageData &&other) noexcept {
    if (this != &other) {
        FreeBuffer();
        m_target = other.m_target;
        m_messageType = other.m_messageType;
        m_executer = other.m_executer;
        m_lock = other.m_lock;
        m_buffer = std::exchange(other.m_buffer, nullptr);
        m_bufferSize = std::exchange(other.m_bufferSize, 0);
    }
    return *this;
}

WTErr MessageData::CopyMessageBuffer(const void *source, std::int32_t size) {
    if (size < 0)
        return eOutOfRangeNumber;
    char *copy = nullptr;
    if (source != nullptr && size > 0) {
        copy = new (std::nothrow) char[static_cast<std::size_t>(size)];
        if (copy == nullptr)
            return eMemOutOfMemory;
        std::memcpy(copy, source, static_cast<std::size_t>(size));
    }
    FreeBuffer();
    m_buffer = copy;
    m_bufferSize = size;
    return eNoErr;
}

int MessageData::execute() {
    return m_executer != nullptr ? m_executer->ExecuteMessage(*this) : 0;
}

void MessageData::FreeBuffer() noexcept {
    delete[] m_buffer;
    m_buffer = nullptr;
    m_bufferSize = 0;
}

MIREL_NAMESPACE_END
