// The presence accessors of every field of every structure.
#include <gtest/gtest.h>
#include <string.h>

#include <string>
#include <vector>

#include "tests/promises/field_list.h"

namespace zrp_test {

template <class T>
class Presence : public testing::Test {
  protected:
    void SetUp() override { memset(records_.data(), 0, sizeof(T)); }

    /// The accessors are for records that may not change otherwise.
    const T& record() const { return records_.front(); }
    bool isZero() const {
        return std::string(reinterpret_cast<const char*>(records_.data()), sizeof(T)) ==
               std::string(sizeof(T), '\0');
    }

  private:
    // One record, on the heap: a record with a trailing array is no member for another class.
    std::vector<T> records_ = std::vector<T>(1);
};
TYPED_TEST_SUITE(Presence, Structures, StructureName);

TYPED_TEST(Presence, HasOneBitPerFieldInDeclarationOrder) {
    unsigned bit = 0;
    for (const auto& field : FieldsOf<TypeParam>::fields) {
        SCOPED_TRACE(field.name);
        EXPECT_EQ(field.bit, bit++);
        this->record().presence = 0;
        (this->record().*field.set)();
        EXPECT_EQ(this->record().presence, uint32_t{1} << field.bit);
    }
}

TYPED_TEST(Presence, OfOneFieldShowsInNoOther) {
    for (const auto& set : FieldsOf<TypeParam>::fields) {
        this->record().presence = 0;
        (this->record().*set.set)();
        for (const auto& seen : FieldsOf<TypeParam>::fields) {
            SCOPED_TRACE(std::string(set.name) + " set, " + seen.name + " asked for");
            EXPECT_EQ((this->record().*seen.has)(), set.bit == seen.bit);
        }
    }
}

TYPED_TEST(Presence, OfOneFieldMayBeMissingAlone) {
    for (const auto& missing : FieldsOf<TypeParam>::fields) {
        this->record().presence = ~(uint32_t{1} << missing.bit);
        for (const auto& seen : FieldsOf<TypeParam>::fields) {
            SCOPED_TRACE(std::string(missing.name) + " missing, " + seen.name + " asked for");
            EXPECT_EQ((this->record().*seen.has)(), missing.bit != seen.bit);
        }
    }
}

TYPED_TEST(Presence, IsAddedToWhatIsSet) {
    for (const auto& field : FieldsOf<TypeParam>::fields) {
        SCOPED_TRACE(field.name);
        this->record().presence = 0xA0000000;
        (this->record().*field.set)();
        (this->record().*field.set)();
        EXPECT_EQ(this->record().presence, 0xA0000000 | uint32_t{1} << field.bit);
    }
}

TYPED_TEST(Presence, TouchesNothingButItsWord) {
    for (const auto& field : FieldsOf<TypeParam>::fields) {
        SCOPED_TRACE(field.name);
        (this->record().*field.set)();
        EXPECT_TRUE((this->record().*field.has)());
        this->record().presence = 0;
        EXPECT_TRUE(this->isZero());
    }
}

TEST(AuthReqPresence, FollowsDeclarationOrderDespiteTheFreeFieldNumber) {
    const quorva_zrp::TZRPAuthReqBody request{};
    request.set_has_XQuorvaTimestamp();
    EXPECT_EQ(request.presence, 0x4U);
    request.set_has_XQuorvaTokenVersion();
    EXPECT_EQ(request.presence, 0xCU);
    request.set_has_OAuthData();
    EXPECT_EQ(request.presence, 0x1CU);
}

}  // namespace zrp_test
