#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "blocking/DomainRules.h"

namespace brindlet {
namespace {

using Case = DomainRuleError::Case;

// The case a text is refused with; fails the test when the text is accepted.
Case refusal(std::string_view text) {
  try {
    const std::string host = DomainRules::normalize(text);
    ADD_FAILURE() << "“" << text << "” was accepted as “" << host << "”";
  } catch (const DomainRuleError& error) {
    return error.which();
  }
  return Case::empty;
}

std::string labelOf(std::size_t length) { return std::string(length, 'a'); }

// A host of exactly `length` characters: labels of 63 letters and a last shorter one.
std::string hostOf(std::size_t length) {
  std::string host;
  while (length - host.size() > 64) host += labelOf(63) + ".";
  host += labelOf(length - host.size() - 4) + ".com";
  return host;
}

TEST(DomainRulesTest, BlankTextIsEmpty) {
  EXPECT_EQ(refusal("   "), Case::empty);
  EXPECT_EQ(refusal(""), Case::empty);
  EXPECT_EQ(refusal(" \n\t "), Case::empty);
}

TEST(DomainRulesTest, WildcardIsInvalidHostNeverCredentials) {
  EXPECT_EQ(refusal("*.example.com"), Case::invalidHost);
  EXPECT_EQ(refusal("user@*.example.com"), Case::invalidHost);
}

TEST(DomainRulesTest, UserOrPasswordIsCredentialsNotAllowed) {
  EXPECT_EQ(refusal("user:pw@example.com"), Case::credentialsNotAllowed);
  EXPECT_EQ(refusal("https://user@example.com"), Case::credentialsNotAllowed);
  EXPECT_EQ(refusal("https://@example.com"), Case::credentialsNotAllowed);
}

TEST(DomainRulesTest, TextThatDoesNotParseReportsCredentials) {
  EXPECT_EQ(refusal("exa mple.com"), Case::credentialsNotAllowed);
}

TEST(DomainRulesTest, SchemeCaseTrailingDotAndPathAreDropped) {
  EXPECT_EQ(DomainRules::normalize("https://EXAMPLE.com./path"), "example.com");
}

TEST(DomainRulesTest, AllTrailingDotsAreRemoved) {
  EXPECT_EQ(DomainRules::normalize("example.com..."), "example.com");
}

TEST(DomainRulesTest, PortQueryAndFragmentAreDropped) {
  EXPECT_EQ(DomainRules::normalize("example.com:8080/news?a=1#top"), "example.com");
}

TEST(DomainRulesTest, AnySchemeIsAsGoodAsHttps) {
  EXPECT_EQ(DomainRules::normalize("ftp://example.com"), "example.com");
}

TEST(DomainRulesTest, SurroundingWhitespaceIsTrimmed) {
  EXPECT_EQ(DomainRules::normalize("  \tNews.Example.com\n"), "news.example.com");
}

TEST(DomainRulesTest, WwwPrefixIsRemovedOnce) {
  EXPECT_EQ(DomainRules::normalize("www.example.com"), "example.com");
  EXPECT_EQ(DomainRules::normalize("www.www.example.com"), "www.example.com");
  EXPECT_EQ(DomainRules::normalize("mail.example.com"), "mail.example.com");
}

TEST(DomainRulesTest, WwwWithTrailingDotIsInvalidHost) {
  EXPECT_EQ(refusal("www."), Case::invalidHost);
}

TEST(DomainRulesTest, BareWordIsInvalidHost) { EXPECT_EQ(refusal("localhost"), Case::invalidHost); }

TEST(DomainRulesTest, IPv4AddressIsNotAllowed) {
  EXPECT_EQ(refusal("127.0.0.1"), Case::ipAddressNotAllowed);
  EXPECT_EQ(refusal("010.0.0.1"), Case::ipAddressNotAllowed);
}

TEST(DomainRulesTest, IPv6LiteralIsNotAllowed) {
  EXPECT_EQ(refusal("[::1]"), Case::ipAddressNotAllowed);
}

TEST(DomainRulesTest, DigitLabelsThatAreNoAddressPassAsHostNames) {
  EXPECT_EQ(DomainRules::normalize("1.2.3"), "1.2.3");
  EXPECT_EQ(DomainRules::normalize("1.2.3.256"), "1.2.3.256");
}

TEST(DomainRulesTest, LabelStartingOrEndingWithHyphenIsInvalidHost) {
  EXPECT_EQ(refusal("-example.com"), Case::invalidHost);
  EXPECT_EQ(refusal("example-.com"), Case::invalidHost);
}

TEST(DomainRulesTest, UnderscoreIsInvalidHost) {
  EXPECT_EQ(refusal("exa_mple.com"), Case::invalidHost);
}

TEST(DomainRulesTest, PunycodePassesAndNonAsciiIsRefused) {
  EXPECT_EQ(DomainRules::normalize("xn--bcher-kva.example"), "xn--bcher-kva.example");
  EXPECT_NE(refusal("https://b%C3%BCcher.example"), Case::empty);
}

TEST(DomainRulesTest, LabelOf63PassesAnd64IsInvalidHost) {
  EXPECT_EQ(DomainRules::normalize(labelOf(63) + ".com"), labelOf(63) + ".com");
  EXPECT_EQ(refusal(labelOf(64) + ".com"), Case::invalidHost);
}

TEST(DomainRulesTest, HostOf253PassesAnd254IsInvalidHost) {
  ASSERT_EQ(hostOf(253).size(), 253U);
  ASSERT_EQ(hostOf(254).size(), 254U);
  EXPECT_EQ(DomainRules::normalize(hostOf(253)), hostOf(253));
  EXPECT_EQ(refusal(hostOf(254)), Case::invalidHost);
}

TEST(DomainRulesTest, ExpandedHostsOfEmptyListIsEmpty) {
  EXPECT_TRUE(DomainRules::expandedHosts({}).empty());
}

TEST(DomainRulesTest, ExpandedHostsOfDuplicatesYieldsOnePair) {
  EXPECT_EQ(DomainRules::expandedHosts({"example.com", "WWW.EXAMPLE.COM"}),
            (std::vector<std::string>{"example.com", "www.example.com"}));
}

TEST(DomainRulesTest, ExpandedHostsAreSortedPairsOfHostAndWwwForm) {
  EXPECT_EQ(DomainRules::expandedHosts({"Example.com", "www.example.com", "example.org"}),
            (std::vector<std::string>{"example.com", "www.example.com", "example.org",
                                      "www.example.org"}));
}

TEST(DomainRulesTest, StoredWwwDomainExpandsFromItsParent) {
  EXPECT_EQ(DomainRules::expandedHosts({"www.example.com"}),
            (std::vector<std::string>{"example.com", "www.example.com"}));
}

TEST(DomainRulesTest, ExpandedHostsFailsWithTheFirstRefusal) {
  try {
    (void)DomainRules::expandedHosts({"example.com", "localhost", "127.0.0.1"});
    FAIL() << "expected a refusal";
  } catch (const DomainRuleError& error) {
    EXPECT_EQ(error.which(), Case::invalidHost);
  }
}

TEST(DomainRulesTest, DescriptionsAreTheFixedWords) {
  EXPECT_EQ(DomainRuleError(Case::empty).description(), "Enter a domain such as example.com.");
  EXPECT_EQ(DomainRuleError(Case::credentialsNotAllowed).description(),
            "Credentials are not allowed in a blocked address.");
  EXPECT_EQ(DomainRuleError(Case::ipAddressNotAllowed).description(),
            "Enter a domain name, not an IP address.");
  EXPECT_EQ(DomainRuleError(Case::invalidHost).description(), "That domain is not valid.");
}

}  // namespace
}  // namespace brindlet
