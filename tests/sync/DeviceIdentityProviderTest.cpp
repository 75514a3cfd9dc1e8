#include <gtest/gtest.h>

#include <memory>

#include "InMemorySecureValueStore.h"
#include "support/Uuid.h"
#include "sync/DeviceIdentityError.h"
#include "sync/DeviceIdentityProvider.h"

namespace brindlet {
namespace {

using testing::InMemorySecureValueStore;

DeviceIdentityError identityError(DeviceIdentityProvider& provider) {
  try {
    (void)provider.loadOrCreate();
  } catch (const DeviceIdentityError& error) {
    return error;
  }
  ADD_FAILURE() << "an identifier was returned";
  return DeviceIdentityError::corruptIdentity();
}

TEST(DeviceIdentityProviderTest, EmptyStoreGetsANewIdentifierOnceAndKeepsIt) {
  const auto store = std::make_shared<InMemorySecureValueStore>();
  DeviceIdentityProvider provider(store);
  const std::string first = provider.loadOrCreate();
  EXPECT_EQ(store->writeCount, 1);
  EXPECT_EQ(store->value, first);
  ASSERT_TRUE(Uuid::parse(first).has_value());
  EXPECT_EQ(first, Uuid::parse(first)->lowercaseText());

  EXPECT_EQ(DeviceIdentityProvider(store).loadOrCreate(), first);
  EXPECT_EQ(store->writeCount, 1);
}

TEST(DeviceIdentityProviderTest, UpperCaseIdentifierIsReturnedUnchanged) {
  const auto store = std::make_shared<InMemorySecureValueStore>();
  store->value = "0F1E2D3C-4B5A-4697-8879-6A5B4C3D2E1F";
  EXPECT_EQ(DeviceIdentityProvider(store).loadOrCreate(), "0F1E2D3C-4B5A-4697-8879-6A5B4C3D2E1F");
  EXPECT_EQ(store->writeCount, 0);
}

TEST(DeviceIdentityProviderTest, NotAUuidIsCorruptAndStaysInTheStore) {
  const auto store = std::make_shared<InMemorySecureValueStore>();
  store->value = "not-a-uuid";
  DeviceIdentityProvider provider(store);
  EXPECT_EQ(identityError(provider), DeviceIdentityError::corruptIdentity());
  EXPECT_EQ(store->value, "not-a-uuid");
  EXPECT_EQ(store->writeCount, 0);
}

TEST(DeviceIdentityProviderTest, InvalidUtf8IsCorruptAndStaysInTheStore) {
  const auto store = std::make_shared<InMemorySecureValueStore>();
  const std::string bytes("\xff\xfe\x80", 3);
  store->value = bytes;
  DeviceIdentityProvider provider(store);
  EXPECT_EQ(identityError(provider), DeviceIdentityError::corruptIdentity());
  EXPECT_EQ(store->value, bytes);
  EXPECT_EQ(store->writeCount, 0);
}

TEST(DeviceIdentityProviderTest, FailedReadComesOutAndNothingIsWritten) {
  const auto store = std::make_shared<InMemorySecureValueStore>();
  store->readFailure = DeviceIdentityError::keychainStatus(-25308);
  DeviceIdentityProvider provider(store);
  EXPECT_EQ(identityError(provider), DeviceIdentityError::keychainStatus(-25308));
  EXPECT_EQ(store->writeCount, 0);
}

TEST(DeviceIdentityProviderTest, FailedWriteComesOutWithoutAnIdentifier) {
  const auto store = std::make_shared<InMemorySecureValueStore>();
  store->writeFailure = DeviceIdentityError::keychainStatus(-34018);
  DeviceIdentityProvider provider(store);
  EXPECT_EQ(identityError(provider), DeviceIdentityError::keychainStatus(-34018));
  EXPECT_EQ(store->value, std::nullopt);
}

TEST(DeviceIdentityErrorTest, StatusIsInTheText) {
  EXPECT_NE(DeviceIdentityError::keychainStatus(-25308).description().find("-25308"),
            std::string::npos);
}

}  // namespace
}  // namespace brindlet
