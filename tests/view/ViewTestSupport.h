#pragma once

#include <vector>

#include <gtest/gtest.h>

#include "view/PluginViewManager.h"
#include "view/WCEventData.h"
#include "view/linux/WUHeadlessView.h"

namespace view_test {

namespace PVM = MIREL_NAMESPACE_NAME::PluginViewManager;

// What a view's callback saw: each event's code and a copy of the record at that moment.
struct Recorder {
    struct Call {
        int code;
        PVM::WCEventData event;
    };
    std::vector<Call> calls;
    bool answer = true;

    static bool Callback(void *reference, int code, PVM::WCEventData *event, void *) {
        auto *self = static_cast<Recorder *>(reference);
        self->calls.push_back({code, *event});
        return self->answer;
    }
};

// A fresh desktop per test, the test's thread its main thread.
class HeadlessDesktop : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(PVM::Init(), 0); }
    void TearDown() override { PVM::Dispose(); }

    MIREL_NAMESPACE_NAME::WSPluginView *
    MakeView(Recorder *recorder, int x = 0, int y = 0,
             MIREL_NAMESPACE_NAME::WCPluginNativeView *parent = nullptr) {
        PVM::WCPluginViewCreateOptions options;
        options.m_parent = parent;
        options.m_position = {x, y};
        options.m_width = 400;
        options.m_height = 300;
        options.m_callback = recorder ? &Recorder::Callback : nullptr;
        options.m_reference = recorder;
        MIREL_NAMESPACE_NAME::WSPluginView *view = nullptr;
        EXPECT_EQ(PVM::CreatePluginView(options, view), 0);
        return view;
    }

    static PVM::WCEventMessage Message(PVM::WEEventMessageKind kind, short x = 0, short y = 0,
                                       unsigned int heldKeys = 0) {
        PVM::WCEventMessage message;
        message.m_kind = kind;
        message.m_position = {x, y};
        message.m_heldKeys = heldKeys;
        return message;
    }
};

} // namespace view_test
