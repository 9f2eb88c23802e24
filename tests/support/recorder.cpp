#include "tests/support/recorder.h"

#include <stdio.h>

#include <ostream>
#include <utility>

#include "Common/Source/Core/BRX/BrxBufUtil.h"

namespace zrp_test {

namespace {

thread_local Recorder* current = nullptr;

int32_t noteAndWrite(Quorva::BrxWriteBuf& buf, PrintCall call) {
    const std::string entry = call.label + call.detail;
    const bool endsEntry = call.kind != PrintCall::Kind::array;
    const char separator = call.separator;
    const int32_t result = current != nullptr ? current->note(std::move(call)) : 0;
    if (result != 0) {
        return result;
    }
    return endsEntry ? buf.textize("%s%c", entry.c_str(), separator)
                     : buf.textize("%s", entry.c_str());
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const PrintCall& call) {
    static const char* const names[] = {"value", "heading", "array", "text"};
    return out << names[static_cast<int>(call.kind)] << " indent " << call.indent << " separator "
               << static_cast<int>(call.separator) << ' ' << call.label << " '" << call.format
               << "' '" << call.detail << "'";
}

PrintCall value(int indent, char separator, std::string label, std::string format,
                std::string printed) {
    return {PrintCall::Kind::value, indent, separator, std::move(label), std::move(format),
            std::move(printed)};
}

PrintCall heading(int indent, char separator, std::string label) {
    return {PrintCall::Kind::heading, indent, separator, std::move(label), "", ""};
}

PrintCall array(int indent, char separator, std::string label, long long count) {
    return {PrintCall::Kind::array, indent, separator, std::move(label), "", std::to_string(count)};
}

PrintCall text(int indent, char separator, std::string label, std::string content) {
    return {PrintCall::Kind::text, indent, separator, std::move(label), "", std::move(content)};
}

Recorder::Recorder() {
    current = this;
}

Recorder::~Recorder() {
    current = nullptr;
}

void Recorder::failAt(size_t index, int32_t result) {
    failIndex_ = index;
    failResult_ = result;
}

int32_t Recorder::note(PrintCall call) {
    const bool fails = calls_.size() == failIndex_;
    calls_.push_back(std::move(call));
    return fails ? failResult_ : 0;
}

}  // namespace zrp_test

namespace Quorva {

using zrp_test::noteAndWrite;
using zrp_test::PrintCall;

int32_t BrxBufUtil::printVariable(BrxWriteBuf& buf, int indent, char separator, const char* label,
                                  const char* format, ...) {
    char printed[64];
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(printed, sizeof(printed), format, arguments);
    va_end(arguments);
    return noteAndWrite(buf, zrp_test::value(indent, separator, label, format, printed));
}

int32_t BrxBufUtil::printVariable(BrxWriteBuf& buf, int indent, char separator, const char* label,
                                  bool isHeading) {
    PrintCall call = zrp_test::heading(indent, separator, label);
    if (!isHeading) {
        call.detail = "false";
    }
    return noteAndWrite(buf, std::move(call));
}

int32_t BrxBufUtil::printArray(BrxWriteBuf& buf, int indent, char separator, const char* label,
                               long long count) {
    return noteAndWrite(buf, zrp_test::array(indent, separator, label, count));
}

int32_t BrxBufUtil::printString(BrxWriteBuf& buf, int indent, char separator, const char* label,
                                const char* text) {
    return noteAndWrite(buf, zrp_test::text(indent, separator, label, text));
}

}  // namespace Quorva
