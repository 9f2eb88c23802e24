// The key exchange whose values the handshake carries: Diffie-Hellman over libcrypto's numbers.
//
// NOT SECURE. The fields of the handshake hold 64 bytes, so the modulus has 512 bits, and numbers
// of that size have been broken in the open for decades. The exchange is also not authenticated:
// whoever sits between the two ends can run one with each. It shows how the messages are used and
// how two ends prove to each other that they hold the same secret, no more.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include <array>
#include <memory>
#include <optional>
#include <span>

#include "protocol/quorva_zrp.h"

struct bignum_st;

namespace conversation {

using DhValue = std::array<uint8_t, quorva_zrp::ZRP_CAP_DH_VALUE>;  ///< most significant byte first
using Mac = std::array<uint8_t, 32>;                                ///< an HMAC-SHA256

/// The modulus that both ends use. Generator: 2.
const DhValue& dhModulus();

/// What both ends know and nobody else should. It is never sent; what is sent are MACs under it.
class SharedSecret {
  public:
    explicit SharedSecret(const DhValue& value) : value_(value) {}
    SharedSecret(const SharedSecret&) = default;
    SharedSecret& operator=(const SharedSecret&) = default;
    ~SharedSecret();

    Mac mac(std::span<const char> message) const;

    /// Whether `claimed` is the MAC of `message`, found without telling by the time it takes.
    bool verifies(std::span<const char> claimed, std::span<const char> message) const;

    void flipOneBit() { value_[0] ^= 1; }  ///< damages the secret, for demonstration

  private:
    DhValue value_;
};

/// A private exponent and the public value that belongs to it.
class DhKeyPair {
  public:
    /// A fresh pair from libcrypto's random numbers.
    DhKeyPair();

    const DhValue& publicValue() const { return publicValue_; }

    /// The secret shared with the holder of `otherPublicValue`; nothing when that is not a number
    /// from 2 to modulus - 2. The others would make the secret one of a few known values.
    std::optional<SharedSecret> agree(std::span<const uint8_t> otherPublicValue) const;

  private:
    struct Release {
        void operator()(bignum_st* number) const;
    };
    std::unique_ptr<bignum_st, Release> exponent_;
    DhValue publicValue_;
};

}  // namespace conversation
