// What all tests of the toolkit client start from: the broker client, which sees the broker and the toolkit through a
// lookup that tests bend, and the toolkit, which does not; everything given back in the end.
#ifndef LXBRIDGE_TESTS_CLIENTS_XMP_CLIENT_FIXTURE_H_
#define LXBRIDGE_TESTS_CLIENTS_XMP_CLIENT_FIXTURE_H_

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "clients/broker/broker_client.h"
#include "clients/xmp/xmp_client.h"
#include "tests/clients/bent_broker.h"

inline constexpr char kDC[] = "http://purl.org/dc/elements/1.1/";
inline constexpr char kXMP[] = "http://ns.adobe.com/xap/1.0/";

// In place of a procedure of any arguments: the C calling convention lets it pass over them.
inline TALErrorRef Refuse() {
  return TheBroker().errors.newError("refused", "XMP", 7);
}

class XMPClientTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(StartXMPClient(TALOrdinal5()));
    ASSERT_TRUE(TAL_T_NMT::StartBrokerClient(BentLookup));
  }
  void TearDown() override {
    Straighten();
    TAL_T_NMT::ShutDownBrokerClient();
    StopXMPClient();
    EXPECT_EQ(leaks, BrokerLeaks());
  }

  // For procedures and tables that were bound before.
  template <typename Proc>
  static void ReplaceNow(const char* interfaceName, const char* shortName, Proc procedure) {
    Replace(interfaceName, shortName, procedure);
    ChangeUnregisterCount();
  }
  static void StraightenNow() {
    Straighten();
    ChangeUnregisterCount();
  }

  // "nothing", the broker's error as "component: message id", or another exception's text.
  template <typename Call>
  static std::string Raised(Call call) {
    try {
      call();
      return "nothing";
    } catch (const TAL_T_NMT::CTALError& error) {
      return std::string(error.Component()) + ": " + error.what() + " " + std::to_string(error.Id());
    } catch (const std::logic_error& error) {
      return error.what();
    }
  }

  const BrokerLeaks leaks{};
};

#endif  // LXBRIDGE_TESTS_CLIENTS_XMP_CLIENT_FIXTURE_H_
