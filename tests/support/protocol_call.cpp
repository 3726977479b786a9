#include "support/protocol_call.h"

#include <cstdint>
#include <functional>
#include <map>
#include <stdexcept>

namespace vorna_test {

namespace {

using vorna::Bytes;
using vorna::CProtocol;

// Numbers reach the builders as the integer types they take, truncated the
// way a caller's conversion would.
struct Args {
    const std::vector<FrameArg>& args;
    uint32_t Address() const { return static_cast<uint32_t>(args[0].number); }
    int Int(size_t i) const { return static_cast<int>(args[i].number); }
    uint32_t Unsigned(size_t i) const { return static_cast<uint32_t>(args[i].number); }
    const std::string& Text(size_t i) const { return args[i].text; }
};

struct Operation {
    size_t argCount;        // the address included
    long long textArg = -1;  // the index of the one text argument, or -1
    std::function<Bytes(CProtocol&, const Args&)> call;
};

const std::map<std::string, Operation>& Operations() {
    static const std::map<std::string, Operation> kOperations = {
        {"StopAxes", {6, -1, [](CProtocol& p, const Args& a) {
             return p.StopAxes(a.Address(), a.Int(1), a.Int(2), a.Int(3), a.Int(4), a.Int(5));
         }}},
        {"Pan", {2, -1, [](CProtocol& p, const Args& a) { return p.Pan(a.Address(), a.Int(1)); }}},
        {"Tilt", {2, -1, [](CProtocol& p, const Args& a) { return p.Tilt(a.Address(), a.Int(1)); }}},
        {"Zoom", {2, -1, [](CProtocol& p, const Args& a) { return p.Zoom(a.Address(), a.Int(1)); }}},
        {"Move", {4, -1, [](CProtocol& p, const Args& a) {
             return p.Move(a.Address(), a.Int(1), a.Int(2), a.Int(3));
         }}},
        {"Preset", {3, -1, [](CProtocol& p, const Args& a) { return p.Preset(a.Address(), a.Int(1), a.Int(2)); }}},
        {"SetZoomSpeed", {2, -1, [](CProtocol& p, const Args& a) { return p.SetZoomSpeed(a.Address(), a.Int(1)); }}},
        {"Iris", {2, -1, [](CProtocol& p, const Args& a) { return p.Iris(a.Address(), a.Int(1)); }}},
        {"Focus", {2, -1, [](CProtocol& p, const Args& a) { return p.Focus(a.Address(), a.Int(1)); }}},
        {"AutoIris", {2, -1, [](CProtocol& p, const Args& a) { return p.AutoIris(a.Address(), a.Int(1)); }}},
        {"AutoFocus", {2, -1, [](CProtocol& p, const Args& a) { return p.AutoFocus(a.Address(), a.Int(1)); }}},
        {"RawCommand", {2, -1, [](CProtocol& p, const Args& a) { return p.RawCommand(a.Address(), a.Unsigned(1)); }}},
        {"Menu", {2, -1, [](CProtocol& p, const Args& a) { return p.Menu(a.Address(), a.Int(1)); }}},
        {"MenuEnter", {2, -1, [](CProtocol& p, const Args& a) { return p.MenuEnter(a.Address(), a.Int(1)); }}},
        {"MenuNavigate", {4, -1, [](CProtocol& p, const Args& a) {
             return p.MenuNavigate(a.Address(), a.Int(1), a.Int(2), a.Int(3));
         }}},
        {"Flip", {2, -1, [](CProtocol& p, const Args& a) { return p.Flip(a.Address(), a.Int(1)); }}},
        {"ApplePeel", {2, -1, [](CProtocol& p, const Args& a) { return p.ApplePeel(a.Address(), a.Int(1)); }}},
        {"Pattern", {3, -1, [](CProtocol& p, const Args& a) { return p.Pattern(a.Address(), a.Int(1), a.Int(2)); }}},
        {"PassThrough", {2, 1, [](CProtocol& p, const Args& a) { return p.PassThrough(a.Address(), a.Text(1)); }}},
    };
    return kOperations;
}

}  // namespace

Bytes CallOperation(CProtocol& protocol, const std::string& operation, const std::vector<FrameArg>& args) {
    const auto found = Operations().find(operation);
    if (found == Operations().end()) throw std::runtime_error("unknown operation " + operation);
    const Operation& op = found->second;
    if (args.size() != op.argCount)
        throw std::runtime_error(operation + " takes " + std::to_string(op.argCount) + " arguments");
    for (size_t i = 0; i < args.size(); ++i)
        if (args[i].isText != (static_cast<long long>(i) == op.textArg))
            throw std::runtime_error(operation + ": argument " + std::to_string(i + 1) + " has the wrong kind");
    return op.call(protocol, Args{args});
}

}  // namespace vorna_test
