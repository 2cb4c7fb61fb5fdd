// The host's client over the toolkit's object. Uses clients/ only.
#include "host/xmp_view.h"

#include <exception>
#include <stdexcept>
#include <utility>

#include "clients/broker/broker_client.h"
#include "clients/broker/tal_error.h"
#include "clients/xmp/xmp_client.h"
#include "clients/xmp/xmp_meta.h"

namespace lxbridge {

namespace {

int sessions = 0;

// Raises the toolkit's error.
void Check(TALErrorRef error) {
  if (error != nullptr) throw TAL_T_NMT::CTALError(error);
}

std::string Copy(const XMPTextOut& text) { return text.text == nullptr ? std::string() : std::string(text.text, text.length); }

// Gathers visited nodes into trees. A visit is in tree order, so the path to the latest node is enough to find the parent
// of the next one: `path_[d]` is the latest node of depth d + 1.
class TreeBuilder {
 public:
  static std::uint32_t Visit(void* user, const XMPVisitedNode* node) noexcept {
    return static_cast<TreeBuilder*>(user)->Add(*node);
  }

  std::vector<XmpNode> Take() {
    if (failure_) std::rethrow_exception(failure_);
    return std::move(top_);
  }

 private:
  // An exception must not cross the toolkit: it waits until the visit has ended.
  std::uint32_t Add(const XMPVisitedNode& node) noexcept {
    if ((node.options & kXMPSchemaNode) != 0 || node.depth == 0) return 0;
    try {
      path_.resize(node.depth - 1);
      std::vector<XmpNode>* siblings = &top_;
      if (!path_.empty()) {
        XmpNode* parent = path_.back();
        siblings = (node.options & kXMPPropIsQualifier) != 0 ? &parent->qualifiers : &parent->children;
      }
      XmpNode& added = siblings->emplace_back();
      added.schema = node.schema;
      added.prefix = node.prefix;
      added.name = node.name;
      if (added.name.empty()) {  // An array item: schema and prefix are the array's.
        added.schema.clear();
        added.prefix.clear();
      }
      added.value = Copy(node.value);
      added.options = node.options;
      path_.push_back(&added);  // Stays valid until the next sibling is added, which first leaves this node's path.
      return 0;
    } catch (...) {
      failure_ = std::current_exception();
      return 2;
    }
  }

  std::vector<XmpNode> top_;
  std::vector<XmpNode*> path_;
  std::exception_ptr failure_;
};

}  // namespace

HostSession::HostSession() {
  if (sessions == 0) {
    const TALLookupProc lookup = TALOrdinal5();
    if (!TAL_T_NMT::StartBrokerClient(lookup)) throw std::runtime_error("the interface broker did not start");
    if (!StartXMPClient(lookup)) {
      TAL_T_NMT::ShutDownBrokerClient();
      throw std::runtime_error("the XMP toolkit did not start");
    }
  }
  ++sessions;
}

HostSession::~HostSession() {
  if (--sessions > 0) return;
  StopXMPClient();
  TAL_T_NMT::ShutDownBrokerClient();
}

XmpView::XmpView(CXMPMeta* meta) : object_(meta->Object()), methods_(&XMPMethodsOf(object_)) {}

std::string XmpView::Serialize(std::uint32_t options, std::int32_t padding) const {
  XMPTextOut packet = {nullptr, 0};
  Check(methods_->serializeToBuffer(object_, &packet, options, padding, nullptr, nullptr, 0));
  std::string copy = Copy(packet);
  Check(methods_->unlockObject(object_, 0));
  return copy;
}

std::vector<XmpNode> XmpView::Properties() const {
  TreeBuilder builder;
  Visit(TreeBuilder::Visit, &builder);
  return builder.Take();
}

void XmpView::Visit(XMPVisitProc visit, void* user) const {
  Check(methods_->visitNodes(object_, nullptr, nullptr, visit, user));
}

bool XmpView::Get(const char* schema, const char* path, std::string* value, std::uint32_t* options) const {
  XMPTextOut text = {nullptr, 0};
  std::uint32_t foundOptions = 0;
  std::uint8_t found = 0;
  Check(methods_->getProperty(object_, schema, path, &text, &foundOptions, &found));
  if (found == 0) return false;
  if (value != nullptr) *value = Copy(text);
  if (options != nullptr) *options = foundOptions;
  Check(methods_->unlockObject(object_, 0));
  return true;
}

void XmpView::Set(const char* schema, const char* path, const char* value, std::uint32_t options) {
  Check(methods_->setProperty(object_, schema, path, value, options));
}

void XmpView::Append(const char* schema, const char* array, std::uint32_t arrayOptions, const char* value) {
  Check(methods_->appendArrayItem(object_, schema, array, arrayOptions, value, 0));
}

void XmpView::SetLocalizedText(const char* schema, const char* path, const char* genericLanguage, const char* language,
                               const char* value) {
  Check(methods_->setLocalizedText(object_, schema, path, genericLanguage, language, value, 0));
}

void XmpView::Delete(const char* schema, const char* path) {
  Check(methods_->deleteProperty(object_, schema, path));
}

}  // namespace lxbridge
