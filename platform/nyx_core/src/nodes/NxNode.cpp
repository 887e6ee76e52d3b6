// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/nodes/NxNode.h>

#include <Nyx/actions/NxRayPickAction.h>
#include <Nyx/actions/NxSearchAction.h>
#include <Nyx/actions/NxWriteAction.h>
#include <Nyx/base/NxDebugError.h>
#include <Nyx/io/NxOutput.h>
#include <Nyx/misc/NxNotList.h>

#include <atomic>
#include <unordered_map>
#include <utility>

namespace {

/// The copies made so far by the outermost copy() on this thread.
class CopyScope {
public:
  explicit CopyScope(bool copyConnections)
      : m_copyConnections(copyConnections)
      , m_outer(std::exchange(s_active, this)) {}
  ~CopyScope() {
    for (const auto& entry : m_copies)
      entry.second->unref();
    s_active = m_outer;
  }
  CopyScope(const CopyScope&) = delete;
  CopyScope& operator=(const CopyScope&) = delete;

  static CopyScope* getActive() { return s_active; }

  /// The copy of a node; null, with a posted error, for a class without instances.
  NxNode* getCopy(const NxNode* original) {
    if (const auto found = m_copies.find(original); found != m_copies.end()) return found->second;
    NxTypedObject* const object = original->getTypeId().createInstance();
    if (!object) {
      NxDebugError::post("NxNode::copy", "There is no way to make a node of type %s.",
                         original->getTypeId().getName().getString());
      return nullptr;
    }
    auto* const node = static_cast<NxNode*>(object);
    node->ref();
    m_copies.emplace(original, node);
    node->copyContents(original, m_copyConnections);
    return node;
  }

private:
  static thread_local CopyScope* s_active;
  bool m_copyConnections;
  CopyScope* m_outer;
  std::unordered_map<const NxNode*, NxNode*> m_copies;
};

thread_local CopyScope* CopyScope::s_active = nullptr;

std::atomic<int> nextActionMethodIndex{0};

} // namespace

NxNodeClass NxNode::s_class("NxNode", __FILE__, nullptr, &NxNode::initClass, nullptr, NX_CLASSES_ARE_BUILT_IN);
NX_NODE_REGISTRATION(NxNode)

int NxNode::getNextActionMethodIndex() { return nextActionMethodIndex; }

void NxNode::incNextActionMethodIndex() { ++nextActionMethodIndex; }

uint64_t NxNode::getNextNodeId() {
  static std::atomic<uint64_t> last{0};
  return last.fetch_add(1, std::memory_order_relaxed) + 1;
}

NxNode::NxNode()
    : m_nodeId(getNextNodeId()) {}

NxNode::NxNode(const NxNode& other)
    : NxFieldContainer(other)
    , m_nodeId(getNextNodeId()) {}

NxNode& NxNode::operator=(const NxNode& other) {
  NxFieldContainer::operator=(other);
  touch();
  return *this;
}

NxNode::~NxNode() = default;

void NxNode::doAction(NxAction*) {}

void NxNode::GLRender(NxGLRenderAction*) {}

void NxNode::callback(NxCallbackAction*) {}

void NxNode::getBoundingBox(NxGetBoundingBoxAction*) {}

void NxNode::getMatrix(NxGetMatrixAction*) {}

void NxNode::handleEvent(NxHandleEventAction*) {}

void NxNode::pick(NxPickAction*) {}

void NxNode::rayPick(NxRayPickAction* action) { pick(action); }

void NxNode::search(NxSearchAction* action) {
  if (action->isWanted(this)) action->addCurrentPath();
}

void NxNode::write(NxWriteAction* action) {
  NxOutput* const output = action->getOutput();
  if (output->getStage() == NxOutput::COUNT_REFS) {
    addWriteReference(output);
  } else if (!output->writeHeader(this)) {
    writeFields(*output);
    output->writeFooter();
  }
}

void NxNode::getPrimitiveCount(NxGetPrimitiveCountAction*) {}

void NxNode::distribute(NxDistributeAction*) {}

void NxNode::startNotify() {
  NxNotList list(this);
  notify(&list);
}

void NxNode::notify(NxNotList* list) {
  if (list->getStamp() == m_lastStamp) return;
  m_lastStamp = list->getStamp();
  m_nodeId = getNextNodeId();
  NxFieldContainer::notify(list);
}

bool NxNode::affectsState() const { return true; }

NxChildList* NxNode::getChildren() const { return nullptr; }

bool NxNode::isSynchronizingContentOnly() const { return false; }

NxNode* NxNode::copy(bool copyConnections) const {
  NxNode* result;
  {
    CopyScope scope(copyConnections);
    result = scope.getCopy(this);
    if (result) result->ref(); // Outlives the scope, which drops its own references.
  }
  if (result) result->unrefNoDelete();
  return result;
}

void NxNode::copyContents(const NxFieldContainer* from, bool copyConnections) {
  NxFieldContainer::copyContents(from, copyConnections);
}

NxNode* NxNode::copyThroughConnection() const {
  CopyScope* const scope = CopyScope::getActive();
  return scope ? scope->getCopy(this) : const_cast<NxNode*>(this);
}
