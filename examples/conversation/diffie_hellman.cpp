#include "examples/conversation/diffie_hellman.h"

#include <openssl/bn.h>
#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/hmac.h>

#include "examples/conversation/outcome.h"

namespace conversation {

namespace {

// p = 2q + 1 with p and q prime, made once for this program by libcrypto's BN_generate_prime_ex as
// a safe prime of 512 bits that is 23 modulo 24. That remainder makes 2 a square modulo p, so that
// it generates the subgroup of prime order q and its powers give away no bit of the exponent.
constexpr DhValue modulusBytes = {
    0xC6, 0x30, 0xE2, 0x88, 0xB8, 0xA4, 0xA9, 0x4F, 0xCD, 0x6E, 0xF1, 0xAD, 0xFB, 0x11, 0xA4, 0x53,
    0xC7, 0xFA, 0x9D, 0xFC, 0xA2, 0x9E, 0x1B, 0x3F, 0xEF, 0xD8, 0x2B, 0x6B, 0x74, 0xE8, 0xD0, 0x23,
    0x51, 0x19, 0x47, 0xA0, 0xA2, 0x60, 0x3A, 0x76, 0x12, 0xBA, 0x85, 0x05, 0xFF, 0xB7, 0x49, 0x28,
    0xBF, 0x25, 0xDE, 0x7A, 0x61, 0xE8, 0x5B, 0x27, 0x36, 0xF1, 0xE3, 0x50, 0x8A, 0x8E, 0xA9, 0xEF};
constexpr unsigned long generator = 2;

struct ReleaseNumber {
    void operator()(BIGNUM* number) const { BN_clear_free(number); }
};
struct ReleaseContext {
    void operator()(BN_CTX* context) const { BN_CTX_free(context); }
};
using Number = std::unique_ptr<BIGNUM, ReleaseNumber>;
using Context = std::unique_ptr<BN_CTX, ReleaseContext>;

void require(bool done, const char* what) {
    if (!done) {
        fail(Outcome::internalError, "libcrypto failed to {}", what);
    }
}

Number numberOf(std::span<const uint8_t> bytes) {
    Number number(BN_bin2bn(bytes.data(), static_cast<int>(bytes.size()), nullptr));
    require(number != nullptr, "make a number");
    return number;
}

/// base ^ exponent modulo p, padded with leading zeros to the 64 bytes that the messages carry.
DhValue power(const BIGNUM* base, const BIGNUM* exponent) {
    const Context context(BN_CTX_new());
    const Number modulus = numberOf(modulusBytes);
    const Number result(BN_new());
    require(context && result, "get memory");
    require(BN_mod_exp(result.get(), base, exponent, modulus.get(), context.get()) == 1,
            "raise to a power");
    DhValue value;
    require(BN_bn2binpad(result.get(), value.data(), static_cast<int>(value.size())) ==
                static_cast<int>(value.size()),
            "write a number out");
    return value;
}

}  // namespace

const DhValue& dhModulus() {
    return modulusBytes;
}

void DhKeyPair::Release::operator()(bignum_st* number) const {
    BN_clear_free(number);
}

DhKeyPair::DhKeyPair() : exponent_(BN_new()) {
    // 1 <= exponent < q, where q = (p - 1) / 2 is the order of the generator.
    const Number order = numberOf(modulusBytes);
    require(exponent_ != nullptr && BN_rshift1(order.get(), order.get()) == 1, "get memory");
    do {
        require(BN_priv_rand_range(exponent_.get(), order.get()) == 1, "draw a random number");
    } while (BN_is_zero(exponent_.get()));
    // Makes BN_mod_exp take its constant-time path for this exponent.
    BN_set_flags(exponent_.get(), BN_FLG_CONSTTIME);

    const Number base(BN_new());
    require(base != nullptr && BN_set_word(base.get(), generator) == 1, "make a number");
    publicValue_ = power(base.get(), exponent_.get());
}

std::optional<SharedSecret> DhKeyPair::agree(std::span<const uint8_t> otherPublicValue) const {
    if (otherPublicValue.empty() || otherPublicValue.size() > modulusBytes.size()) {
        return std::nullopt;
    }
    const Number other = numberOf(otherPublicValue);
    const Number lastUnsafe = numberOf(modulusBytes);
    require(BN_sub_word(lastUnsafe.get(), 1) == 1, "subtract");
    if (BN_cmp(other.get(), BN_value_one()) <= 0 || BN_cmp(other.get(), lastUnsafe.get()) >= 0) {
        return std::nullopt;
    }
    DhValue value = power(other.get(), exponent_.get());
    const SharedSecret secret(value);
    OPENSSL_cleanse(value.data(), value.size());
    return secret;
}

SharedSecret::~SharedSecret() {
    OPENSSL_cleanse(value_.data(), value_.size());
}

Mac SharedSecret::mac(std::span<const char> message) const {
    Mac mac;
    unsigned int size = 0;
    const unsigned char* const done = HMAC(
        EVP_sha256(), value_.data(), static_cast<int>(value_.size()),
        reinterpret_cast<const unsigned char*>(message.data()), message.size(), mac.data(), &size);
    require(done != nullptr && size == mac.size(), "compute an HMAC-SHA256");
    return mac;
}

bool SharedSecret::verifies(std::span<const char> claimed, std::span<const char> message) const {
    const Mac expected = mac(message);
    return claimed.size() == expected.size() &&
           CRYPTO_memcmp(claimed.data(), expected.data(), expected.size()) == 0;
}

}  // namespace conversation
