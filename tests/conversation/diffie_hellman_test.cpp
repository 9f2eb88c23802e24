// The key exchange: the modulus is what it is said to be, both ends agree, weak values are refused.
#include "examples/conversation/diffie_hellman.h"

#include <gtest/gtest.h>
#include <openssl/bn.h>

#include <memory>
#include <string_view>

namespace zrp_test {
namespace {

using namespace conversation;

struct Release {
    void operator()(BIGNUM* number) const { BN_free(number); }
};
using Number = std::unique_ptr<BIGNUM, Release>;

Number modulus() {
    return Number(BN_bin2bn(dhModulus().data(), static_cast<int>(dhModulus().size()), nullptr));
}

bool isPrime(const BIGNUM* number) {
    return BN_check_prime(number, nullptr, nullptr) == 1;
}

/// modulus + offset as a public value.
DhValue nearModulus(int offset) {
    const Number number = modulus();
    EXPECT_EQ(offset < 0 ? BN_sub_word(number.get(), static_cast<BN_ULONG>(-offset))
                         : BN_add_word(number.get(), static_cast<BN_ULONG>(offset)),
              1);
    DhValue value;
    EXPECT_EQ(BN_bn2binpad(number.get(), value.data(), static_cast<int>(value.size())),
              static_cast<int>(value.size()));
    return value;
}

constexpr std::string_view message = "a message";

TEST(DiffieHellman, TheModulusIsASafePrimeOf512BitsThatSuitsTheGenerator) {
    const Number p = modulus();
    EXPECT_EQ(BN_num_bits(p.get()), 512);
    EXPECT_TRUE(isPrime(p.get()));
    EXPECT_EQ(BN_mod_word(p.get(), 24), 23u);
    const Number q(BN_new());
    ASSERT_EQ(BN_rshift1(q.get(), p.get()), 1);
    EXPECT_TRUE(isPrime(q.get()));
}

TEST(DiffieHellman, BothEndsArriveAtTheSameSecret) {
    const DhKeyPair client;
    const DhKeyPair server;
    const auto ofClient = client.agree(server.publicValue());
    const auto ofServer = server.agree(client.publicValue());
    ASSERT_TRUE(ofClient && ofServer);
    EXPECT_EQ(ofClient->mac(message), ofServer->mac(message));
}

TEST(DiffieHellman, AThirdEndArrivesAtAnother) {
    const DhKeyPair client;
    const DhKeyPair server;
    const DhKeyPair stranger;
    EXPECT_NE(client.publicValue(), server.publicValue());
    const auto ofClient = client.agree(server.publicValue());
    const auto ofStranger = stranger.agree(server.publicValue());
    ASSERT_TRUE(ofClient && ofStranger);
    EXPECT_NE(ofClient->mac(message), ofStranger->mac(message));
}

TEST(DiffieHellman, TakesAValueWithoutItsLeadingZeros) {
    const DhKeyPair pair;
    DhValue padded = {};
    padded.back() = 5;
    const uint8_t bare[] = {5};
    const auto ofPadded = pair.agree(padded);
    const auto ofBare = pair.agree(bare);
    ASSERT_TRUE(ofPadded && ofBare);
    EXPECT_EQ(ofPadded->mac(message), ofBare->mac(message));
}

TEST(DiffieHellman, RefusesValuesThatWouldGiveTheSecretAway) {
    const DhKeyPair pair;
    DhValue zero = {};
    DhValue one = {};
    one.back() = 1;
    DhValue two = {};
    two.back() = 2;
    EXPECT_FALSE(pair.agree(zero));
    EXPECT_FALSE(pair.agree(one));
    EXPECT_TRUE(pair.agree(two));
    EXPECT_TRUE(pair.agree(nearModulus(-2)));
    EXPECT_FALSE(pair.agree(nearModulus(-1)));
    EXPECT_FALSE(pair.agree(nearModulus(0)));
    EXPECT_FALSE(pair.agree(nearModulus(1)));
    EXPECT_FALSE(pair.agree({}));
    const std::array<uint8_t, 65> tooLong = {0, 7};
    EXPECT_FALSE(pair.agree(tooLong));
}

TEST(DiffieHellman, AMacFitsItsMessageAndItsSecretOnly) {
    const DhKeyPair pair;
    auto secret = pair.agree(DhKeyPair().publicValue());
    ASSERT_TRUE(secret);
    Mac mac = secret->mac(message);
    const std::span<const char> claimed(reinterpret_cast<const char*>(mac.data()), mac.size());
    EXPECT_TRUE(secret->verifies(claimed, message));
    EXPECT_FALSE(secret->verifies(claimed, std::string_view("another message")));
    EXPECT_FALSE(secret->verifies(claimed.first(31), message));
    EXPECT_FALSE(secret->verifies({}, message));
    mac[31] ^= 1;
    EXPECT_FALSE(secret->verifies(claimed, message));
    mac[31] ^= 1;
    secret->flipOneBit();
    EXPECT_FALSE(secret->verifies(claimed, message));
}

TEST(DiffieHellman, AnEmptyMessageHasAMac) {
    const DhKeyPair pair;
    const auto secret = pair.agree(DhKeyPair().publicValue());
    ASSERT_TRUE(secret);
    EXPECT_EQ(secret->mac({}), secret->mac(std::string_view("")));
    EXPECT_NE(secret->mac({}), secret->mac(message));
}

}  // namespace
}  // namespace zrp_test
