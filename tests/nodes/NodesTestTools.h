// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/KoKerrin.h>
#include <Nyx/actions/NxCallbackAction.h>
#include <Nyx/base/NbRefPtr.h>
#include <Nyx/base/NxMessageCollector.h>
#include <Nyx/misc/NxState.h>
#include <Nyx/nodes/NxGroup.h>
#include <Nyx/nodes/NxSeparator.h>

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

/// A test between the start and the end of the library, with all messages collected.
class KoTest : public testing::Test {
protected:
  KoTest() { KoKerrin::init(); }
  ~KoTest() override { KoKerrin::finish(); }

  /// The messages so far as "origin: text", and none from here on.
  std::vector<std::string> takeMessages() {
    std::vector<std::string> texts;
    for (const NxMessage& message : m_messages.getMessages())
      texts.push_back(message.origin + ": " + message.text);
    m_messages.clear();
    return texts;
  }

private:
  NxMessageCollector m_messages;
};

using Messages = std::vector<std::string>;

/// Walks nodes in order, and then calls `look` with the state that they have left.
inline void lookBelow(const std::vector<NxNode*>& nodes, const std::function<void(NxState*)>& look) {
  const NbRefPtr<NxGroup> root(new NxGroup);
  for (NxNode* node : nodes)
    root->addChild(node);
  auto* place = new NxSeparator;
  root->addChild(place);
  struct Call {
    const NxNode* place;
    const std::function<void(NxState*)>& look;
  } call{place, look};
  NxCallbackAction action;
  action.addPreCallback(
      NxSeparator::getClassTypeId(),
      [](void* data, NxCallbackAction* current, const NxNode* node) {
        const Call& c = *static_cast<Call*>(data);
        if (node == c.place) c.look(current->getState());
        return NxCallbackAction::CONTINUE;
      },
      &call);
  action.apply(root.get());
}
