#pragma once

#include "core/MirelNamespace.h"

MIREL_NAMESPACE_BEGIN

class MessageData;

// Carries out a message taken from a queue. Implemented by whoever serves the queue; a message
// names its executer, so one queue can serve several.
class WCCommandExecuterInterface {
public:
    virtual ~WCCommandExecuterInterface() = default;
    // [consumer-thread] Runs the message. A non-zero result from an idle queue's pass asks for the
    // message to be tried again at the next pass.
    virtual int ExecuteMessage(MessageData &data) = 0;
};

MIREL_NAMESPACE_END
