// The host's client over the toolkit's object. Uses clients/ only.
#include "host/xmp_view.h"

#include <exception>
#include <stdexcept>
#include <utility>

#include "clients/broker/broker_client.h"
#include "clients/broker/tal_error.h"
#include "clients/xmp/xmp_client.h"
#include "clients/xmp/xmp_meta.h"
#include "clients/xmp/xmp_text.h"

namespace lxbridge {

namespace {

using TAL_T_NMT::ThrowIfError;

int sessions = 0;

std::string Copy(const XMPTextOut& text) {
  return text.text == nullptr ? std::string() : std::string(text.text, text.length);
}

// Gathers visited nodes into trees. A visit is in tree order, so the path to the latest node is enough to find the
// parent of the next one: `path_[d]` is the latest node of depth d + 1.
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
      const std::size_t above = node.depth - 1;
      if (above > path_.size()) throw std::logic_error("the XMP toolkit visits a node before its parent");
      path_.resize(above);
      std::vector<XmpNode>* siblings = &top_;
      if (!path_.empty()) {
        XmpNode* parent = path_.back();
        siblings = (node.options & kXMPPropIsQualifier) != 0 ? &parent->qualifiers : &parent->children;
      }
      XmpNode& added = siblings->emplace_back();
      added.name = node.name;
      if (!added.name.empty()) {  // An array item's schema and prefix would be the array's.
        added.schema = node.schema;
        added.prefix = node.prefix;
      }
      added.value = Copy(node.value);
      added.options = node.options;
      path_.push_back(&added);  // Valid until its next sibling is added, and that takes it off the path first.
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

bool SchemaOfPrefix(const char* prefix, std::string* schema) {
  const XMPMetaStatics& statics = XMPStatics();
  XMPTextOut text = {nullptr, 0};
  std::uint8_t found = 0;
  ThrowIfError(statics.getNamespaceURI(prefix, &text, &found));
  std::string copy;
  TakeText(text, &copy, [&] { return statics.unlockStatics(0); });
  if (found == 0) return false;
  *schema = std::move(copy);
  return true;
}

XmpView::XmpView(CXMPMeta* meta) : object_(meta->Object()) {}

// Asked for each call, since a broker whose interfaces change gives other procedures.
const XMPMetaMethods& XmpView::Methods() const {
  return XMPMethodsOf(object_);
}

std::string XmpView::Serialize(std::uint32_t options, std::int32_t padding) const {
  const XMPMetaMethods& methods = Methods();
  XMPTextOut packet = {nullptr, 0};
  ThrowIfError(methods.serializeToBuffer(object_, &packet, options, padding, nullptr, nullptr, 0));
  std::string copy;
  TakeText(packet, &copy, [&] { return methods.unlockObject(object_, 0); });
  return copy;
}

std::vector<XmpNode> XmpView::Properties() const {
  TreeBuilder builder;
  Visit(TreeBuilder::Visit, &builder);
  return builder.Take();
}

void XmpView::Visit(XMPVisitProc visit, void* user) const {
  ThrowIfError(Methods().visitNodes(object_, nullptr, nullptr, visit, user));
}

bool XmpView::Get(const char* schema, const char* path, std::string* value, std::uint32_t* options) const {
  const XMPMetaMethods& methods = Methods();
  XMPTextOut text = {nullptr, 0};
  std::uint32_t foundOptions = 0;
  std::uint8_t found = 0;
  ThrowIfError(methods.getProperty(object_, schema, path, value != nullptr ? &text : nullptr, &foundOptions, &found));
  if (found == 0) return false;
  if (value != nullptr) TakeText(text, value, [&] { return methods.unlockObject(object_, 0); });
  if (options != nullptr) *options = foundOptions;
  return true;
}

void XmpView::Set(const char* schema, const char* path, const char* value, std::uint32_t options) {
  ThrowIfError(Methods().setProperty(object_, schema, path, value, options));
}

void XmpView::Append(const char* schema, const char* array, std::uint32_t arrayOptions, const char* value) {
  ThrowIfError(Methods().appendArrayItem(object_, schema, array, arrayOptions, value, 0));
}

void XmpView::SetLocalizedText(const char* schema, const char* path, const char* genericLanguage, const char* language,
                               const char* value) {
  ThrowIfError(Methods().setLocalizedText(object_, schema, path, genericLanguage, language, value, 0));
}

void XmpView::Delete(const char* schema, const char* path) {
  ThrowIfError(Methods().deleteProperty(object_, schema, path));
}

}  // namespace lxbridge
