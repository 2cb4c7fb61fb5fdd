// A toolkit for tests of the toolkit client: it registers all of its interfaces and methods with the broker, keeps a
// record of the calls that it gets, and answers as it is told. Its ordinals stand in for the toolkit library's.
#ifndef LXBRIDGE_TESTS_CLIENTS_FAKE_TOOLKIT_H_
#define LXBRIDGE_TESTS_CLIENTS_FAKE_TOOLKIT_H_

#include <string>
#include <vector>

#include "clients/xmp/xmp_abi.h"

struct FakeToolkit {
  std::vector<std::string> calls;  // "SetProperty(schema, name, text, 0)"
  std::string failing;             // The short name of the procedure that refuses: "no <name>", component "XMP", id 7.
  bool givesNoObject = false;      // "NewWithBuffer" succeeds with null.
  bool found = true;
  std::string text = "text";  // Of every property, item and path. Overwritten when the client unlocks it.
  std::uint32_t number = 5;   // Every count, and the options of every node.
  bool flag = true;
  bool withoutMethods = false;  // Of kinds that are made from now on.

  // With the broker, as an independent library; its next start makes a new kind.
  void Register();
  void Unregister();
};
extern FakeToolkit toolkit;

#endif  // LXBRIDGE_TESTS_CLIENTS_FAKE_TOOLKIT_H_
