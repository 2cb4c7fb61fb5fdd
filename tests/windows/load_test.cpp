// A host on Windows that loads the library at run time, without any of the compiler's shared libraries of its own:
// lx_load_test PHOTO. Prints the failures; status 0 if there are none.
#include <windows.h>

#include <cstdio>
#include <string>

#include "api/include/lxbridge/lxbridge.h"
#include "clients/xmp/xmp_abi.h"
#include "tests/windows/heap.h"

namespace {

int failures = 0;

void Expect(bool holds, const char* what) {
  if (holds) return;
  ++failures;
  std::printf("not so: %s\n", what);
}

template <typename Procedure>
Procedure At(HMODULE library, WORD ordinal) {
  return reinterpret_cast<Procedure>(reinterpret_cast<void*>(GetProcAddress(library, MAKEINTRESOURCEA(ordinal))));
}

struct Bridge {
  HMODULE library = LoadLibraryW(L"LxBridge.dll");
  void (*destroy)(LxInterchangeHandle) = At<void (*)(LxInterchangeHandle)>(library, 1);
  CXMPMeta* (*getXmp)(LxInterchangeHandle) = At<CXMPMeta* (*)(LxInterchangeHandle)>(library, 2);
  bool (*init)() = At<bool (*)()>(library, 3);
  LxInterchangeHandle (*create)(const char*) = At<LxInterchangeHandle (*)(const char*)>(library, 4);
  void (*term)() = At<void (*)()>(library, 5);
};

TALLookupProc Lookup() {
  const auto entry = At<TALLookupProc (*)()>(GetModuleHandleW(L"TAL.dll"), 5);
  return entry != nullptr ? entry() : nullptr;
}

bool ToolkitIsThere() {
  return Lookup()(kXMPMetaStaticInterface, "NewWithBuffer", "XMPMeta_NewWithBuffer_Ctor") != nullptr;
}

std::uint32_t LiveContainers() {
  const TALProc count = Lookup()(kTALContainerInterface, "GetLiveCount", "TALContainer_GetLiveCount");
  return reinterpret_cast<std::uint32_t (*)()>(count)();
}

// How many properties the XMP object of a path has; more than a few only where the file was read.
std::uint32_t PropertiesOf(const Bridge& bridge, const std::string& path) {
  // In memory: the virtual functions, the toolkit's object, its methods in the order of their names.
  struct Meta {
    const void* virtualFunctions;
    XMPObjectRef object;
    const XMPMetaMethods* methods;
  };
  const LxInterchangeHandle handle = bridge.create(path.c_str());
  CXMPMeta* xmp = bridge.getXmp(handle);
  Expect(xmp == bridge.getXmp(handle), "the XMP object stays at its address");
  const XMPObjectRef object = reinterpret_cast<const Meta*>(xmp)->object;

  const auto newAtom = reinterpret_cast<decltype(TALStringProcs::newStringAtom)>(
      Lookup()(kTALStringInterface, "NewStringAtom", "TALString_NewStringAtom"));
  const auto getMethod = reinterpret_cast<decltype(TALContainerProcs::getMethod)>(
      Lookup()(kTALContainerInterface, "GetMethod", "TALContainer_GetMethod"));
  TALProc method = nullptr;
  std::uint32_t count = 0;
  const XMPVisitProc countProperty = [](void* user, const XMPVisitedNode* node) -> std::uint32_t {
    if (node->depth == 1) ++*static_cast<std::uint32_t*>(user);
    return 0;
  };
  if (getMethod(&method, object, newAtom("VisitNodes"), newAtom("XMPMeta_VisitNodes_Method"), 1) != nullptr ||
      method == nullptr ||
      reinterpret_cast<decltype(XMPMetaMethods::visitNodes)>(method)(object, nullptr, nullptr, countProperty, &count) !=
          nullptr) {
    Expect(false, "the toolkit visits properties");
  }
  bridge.destroy(handle);
  return count;
}

void StartsAndStopsInOrder(const Bridge& bridge) {
  Expect(GetModuleHandleW(L"VeltoXMP.dll") != nullptr, "the toolkit is loaded with the library");
  Expect(!ToolkitIsThere(), "loading starts nothing");
  bridge.term();
  Expect(bridge.init(), "the library starts");
  Expect(bridge.init(), "starting twice is starting once");
  Expect(ToolkitIsThere(), "the toolkit is started");
  bridge.term();
  Expect(!ToolkitIsThere(), "one stop undoes both starts");
  bridge.term();
  Expect(bridge.init() && ToolkitIsThere(), "the library starts again");
}

std::string Utf8(const std::wstring& text) {
  std::string utf8(text.size() * 3 + 1, '\0');
  const int length = WideCharToMultiByte(CP_UTF8, 0, text.c_str(), static_cast<int>(text.size()), utf8.data(),
                                         static_cast<int>(utf8.size()), nullptr, nullptr);
  utf8.resize(static_cast<std::size_t>(length));
  return utf8;
}

void ReadsPathsInUtf8(const Bridge& bridge, const char* photo) {
  const std::uint32_t expected = PropertiesOf(bridge, photo);
  Expect(expected > 10, "the photograph's properties are read");
  // Beyond every code page of one byte, and beyond the characters of one UTF-16 unit.
  wchar_t folder[MAX_PATH + 1] = {};
  Expect(GetTempPathW(MAX_PATH, folder) != 0, "there is a folder for temporary files");
  const std::wstring path = folder + std::wstring(L"lx \u00FCber \u65E5\u672C \U0001F4F7.jpg");
  Expect(CopyFileW(std::wstring(photo, photo + std::string(photo).size()).c_str(), path.c_str(), FALSE) != 0,
         "the photograph is copied");
  Expect(PropertiesOf(bridge, Utf8(path)) == expected, "the copy's properties are read");
  const std::string cut = Utf8(path).substr(0, Utf8(path).find("\xB7.jpg"));
  Expect(PropertiesOf(bridge, cut) < expected, "a path that ends within a character opens nothing");
  Expect(DeleteFileW(path.c_str()) != 0, "the file is closed again");
  Expect(PropertiesOf(bridge, Utf8(path)) < expected, "a file that is not there gives no property of a file");
}

void UnloadingGivesMemoryBack(const char* photo) {
  constexpr std::size_t kRounds = 50;
  std::size_t before = 0;
  for (std::size_t round = 0; round < kRounds + 2; ++round) {
    if (round == 2) before = BytesInUse();
    const Bridge bridge;
    (void)bridge.init();
    bridge.destroy(bridge.create(photo));
    bridge.term();
    FreeLibrary(bridge.library);
  }
  const std::size_t lost = BytesInUse() - before;
  std::printf("%d bytes lost for each load\n", static_cast<int>(lost) / static_cast<int>(kRounds));
  Expect(lost < kRounds * 1024, "loading and unloading loses less than 1 KB");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  for (int load = 0; load < 2; ++load) {  // Unloaded and loaded again: nothing of the first time is left.
    const Bridge bridge;
    if (bridge.library == nullptr || bridge.create == nullptr || Lookup() == nullptr) {
      std::printf("the library cannot be loaded: error %lu\n", GetLastError());
      return 1;
    }
    StartsAndStopsInOrder(bridge);
    ReadsPathsInUtf8(bridge, argv[1]);
    Expect(LiveContainers() == 0, "no XMP object is left");
    bridge.destroy(nullptr);
    bridge.term();
    Expect(FreeLibrary(bridge.library) != 0 && GetModuleHandleW(L"LxBridge.dll") == nullptr, "the library is unloaded");
  }
  UnloadingGivesMemoryBack(argv[1]);
  return failures == 0 ? 0 : 1;
}
