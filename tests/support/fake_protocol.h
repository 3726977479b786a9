// A protocol for tests: every builder returns a readable text naming the call
// ("Pan(1,32)") unless the operation was marked unsupported, and every call
// is recorded in order.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "protocols/protocol.h"

namespace vorna_test {

class FakeProtocol : public vorna::CProtocol {
public:
    int GetPresetCount() const override { return 32; }
    int GetMinAddress() const override { return 0; }
    int GetMaxAddress() const override { return 255; }
    bool ShouldRepeat(int64_t, int64_t) const override { return repeat; }
    int GetRepeatCount(int opcode) const override { return opcode == 60 ? presetRepeatCount : 0; }
    bool HasMenuMode() const override { return false; }
    int GetCommandInterval() const override { return interval; }

    vorna::Bytes PassThrough(uint32_t a, const vorna::Bytes& text) override {
        return Call("PassThrough", {int(a)}, text);
    }
    vorna::Bytes StopAxes(uint32_t a, int p, int t, int z, int i, int f) override {
        return Call("StopAxes", {int(a), p, t, z, i, f});
    }
    vorna::Bytes Pan(uint32_t a, int s) override { return Call("Pan", {int(a), s}); }
    vorna::Bytes Tilt(uint32_t a, int s) override { return Call("Tilt", {int(a), s}); }
    vorna::Bytes Zoom(uint32_t a, int s) override { return Call("Zoom", {int(a), s}); }
    vorna::Bytes Move(uint32_t a, int p, int t, int z) override { return Call("Move", {int(a), p, t, z}); }
    vorna::Bytes Preset(uint32_t a, int n, int act) override { return Call("Preset", {int(a), n, act}); }
    vorna::Bytes SetZoomSpeed(uint32_t a, int s) override { return Call("SetZoomSpeed", {int(a), s}); }
    vorna::Bytes Iris(uint32_t a, int d) override { return Call("Iris", {int(a), d}); }
    vorna::Bytes Focus(uint32_t a, int d) override { return Call("Focus", {int(a), d}); }
    vorna::Bytes AutoIris(uint32_t a, int m) override { return Call("AutoIris", {int(a), m}); }
    vorna::Bytes AutoFocus(uint32_t a, int m) override { return Call("AutoFocus", {int(a), m}); }
    vorna::Bytes RawCommand(uint32_t a, uint32_t v) override { return Call("RawCommand", {int(a), int(v)}); }
    vorna::Bytes Menu(uint32_t a, int on) override { return Call("Menu", {int(a), on}); }
    vorna::Bytes MenuEnter(uint32_t a, int v) override { return Call("MenuEnter", {int(a), v}); }
    vorna::Bytes MenuNavigate(uint32_t a, int v, int h, int e) override {
        return Call("MenuNavigate", {int(a), v, h, e});
    }
    vorna::Bytes Flip(uint32_t a, int x) override { return Call("Flip", {int(a), x}); }
    vorna::Bytes ApplePeel(uint32_t a, int x) override { return Call("ApplePeel", {int(a), x}); }
    vorna::Bytes Pattern(uint32_t a, int n, int act) override { return Call("Pattern", {int(a), n, act}); }

    std::set<std::string> unsupported;  // operations that return empty bytes
    std::vector<std::string> calls;     // "Pan(1,32)" for each call, in order
    bool repeat = false;
    int interval = 250;
    int presetRepeatCount = 0;

private:
    vorna::Bytes Call(const std::string& name, const std::vector<int>& args, const std::string& text = "") {
        std::string call = name + "(";
        for (size_t i = 0; i < args.size(); ++i) call += (i ? "," : "") + std::to_string(args[i]);
        if (name == "PassThrough") call += ",'" + text + "'";
        call += ")";
        calls.push_back(call);
        if (unsupported.count(name)) return {};
        return name == "PassThrough" ? text : call;
    }
};

}  // namespace vorna_test
