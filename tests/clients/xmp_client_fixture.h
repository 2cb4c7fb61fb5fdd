// What all tests of the toolkit client start from: the broker client and the toolkit's fake started, everything given
// back in the end.
#ifndef LXBRIDGE_TESTS_CLIENTS_XMP_CLIENT_FIXTURE_H_
#define LXBRIDGE_TESTS_CLIENTS_XMP_CLIENT_FIXTURE_H_

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "clients/broker/broker_client.h"
#include "clients/xmp/xmp_client.h"
#include "tests/clients/bent_broker.h"
#include "tests/clients/fake_toolkit.h"

class XMPClientTest : public testing::Test {
 protected:
  void SetUp() override {
    toolkit = FakeToolkit();
    ASSERT_TRUE(TAL_T_NMT::StartBrokerClient(BentLookup));
    ASSERT_TRUE(StartXMPClient(BentLookup));
    toolkit.calls.clear();
  }
  void TearDown() override {
    StopXMPClient();
    TAL_T_NMT::ShutDownBrokerClient();
    Straighten();
    EXPECT_EQ(leaks, BrokerLeaks());
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

  const BrokerLeaks leaks;
};

#endif  // LXBRIDGE_TESTS_CLIENTS_XMP_CLIENT_FIXTURE_H_
