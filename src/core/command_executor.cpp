#include "core/command_executor.h"

#include <climits>
#include <cmath>

#include "env/environment.h"
#include "host/host_sender.h"

namespace vorna {

namespace {

// How a handler's bytes affect the kept command.
enum class Ending { kPlain, kRepeatable };

struct Built {
    Bytes bytes;
    Ending ending;
};

// The integer part of the parameter, truncated toward zero (3.9 -> 3, -2.5 -> -2).
// A value outside the 32-bit range (or not a number) gives INT_MIN, as the
// processor's own truncation does.
int IntegerPart(double parm) {
    double whole;
    std::modf(parm, &whole);
    if (!(whole >= INT_MIN && whole <= INT_MAX)) return INT_MIN;
    return static_cast<int>(whole);
}

// The motion speed for a stored speed setting: one more, so that 0 always
// means "axis still" and a setting of 0 still moves. Any setting the host
// sends is taken; the sum keeps the low 32 bits, as the frames always had it.
int MotionSpeed(int setting) { return static_cast<int>(static_cast<int64_t>(setting) + 1); }

class Handlers {
public:
    Handlers(PtzCamera& camera, CProtocol& protocol, int n)
        : camera_(camera), protocol_(protocol), a_(camera.address), n_(n) {}

    Built Run(int opcode) {
        switch (opcode) {
            case VORNA_OP_AUTO_IRIS: return Plain(protocol_.AutoIris(a_, n_));
            case VORNA_OP_IRIS_OPEN:
                if (camera_.menuMode) return Plain(protocol_.MenuNavigate(a_, 0, 0, 1));
                camera_.irisMotion = 1;
                return Repeatable(protocol_.Iris(a_, 1));
            case VORNA_OP_IRIS_CLOSE:
                camera_.irisMotion = -1;
                return Repeatable(protocol_.Iris(a_, -1));
            case VORNA_OP_FOCUS_NEAR:
                camera_.focusMotion = 1;
                return Repeatable(protocol_.Focus(a_, 1));
            case VORNA_OP_FOCUS_FAR:
                camera_.focusMotion = -1;
                return Repeatable(protocol_.Focus(a_, -1));
            case VORNA_OP_AUTO_FOCUS: return Plain(protocol_.AutoFocus(a_, n_));
            case VORNA_OP_ZOOM_IN:
                camera_.zoomMotion = MotionSpeed(camera_.zoomSpeed);
                return Repeatable(OrMove(protocol_.Zoom(a_, camera_.zoomMotion)));
            case VORNA_OP_ZOOM_OUT:
                camera_.zoomMotion = ~camera_.zoomSpeed;
                return Repeatable(OrMove(protocol_.Zoom(a_, camera_.zoomMotion)));
            case VORNA_OP_SET_ZOOM_SPEED:
                camera_.zoomSpeed = n_;
                return Plain(protocol_.SetZoomSpeed(a_, n_));
            case VORNA_OP_STOP_ZOOM: return StopAxis(camera_.zoomMotion, 0, 0, 1, [this] { return protocol_.Zoom(a_, 0); });
            case VORNA_OP_STOP_PAN: return StopAxis(camera_.panMotion, 1, 0, 0, [this] { return protocol_.Pan(a_, 0); });
            case VORNA_OP_STOP_TILT: return StopAxis(camera_.tiltMotion, 0, 1, 0, [this] { return protocol_.Tilt(a_, 0); });
            case VORNA_OP_PAN_LEFT:
                if (camera_.menuMode) return Plain(protocol_.MenuNavigate(a_, 0, -1, 0));
                camera_.panMotion = ~camera_.panSpeed;
                return Repeatable(OrMove(protocol_.Pan(a_, camera_.panMotion)));
            case VORNA_OP_PAN_RIGHT:
                if (camera_.menuMode) return Plain(protocol_.MenuNavigate(a_, 0, 1, 0));
                camera_.panMotion = MotionSpeed(camera_.panSpeed);
                return Repeatable(OrMove(protocol_.Pan(a_, camera_.panMotion)));
            case VORNA_OP_SET_PAN_SPEED:
                camera_.panSpeed = n_;
                return Plain({});
            case VORNA_OP_SET_TILT_SPEED:
                camera_.tiltSpeed = n_;
                return Plain({});
            case VORNA_OP_TILT_DOWN:
                if (camera_.menuMode) return Plain(protocol_.MenuNavigate(a_, -1, 0, 0));
                camera_.tiltMotion = ~camera_.tiltSpeed;
                return Repeatable(OrMove(protocol_.Tilt(a_, camera_.tiltMotion)));
            case VORNA_OP_TILT_UP:
                if (camera_.menuMode) return Plain(protocol_.MenuNavigate(a_, 1, 0, 0));
                camera_.tiltMotion = MotionSpeed(camera_.tiltSpeed);
                return Repeatable(OrMove(protocol_.Tilt(a_, camera_.tiltMotion)));
            case VORNA_OP_SET_PRESET: return Plain(protocol_.Preset(a_, n_, kPresetSet));
            case VORNA_OP_CLEAR_PRESET: return Plain(protocol_.Preset(a_, n_, kPresetClear));
            case VORNA_OP_GO_TO_PRESET: return Plain(protocol_.Preset(a_, n_, kPresetGoTo));
            case VORNA_OP_STOP_IRIS: return StopLens(camera_.irisMotion, 0, 1, [this] { return protocol_.Iris(a_, 0); });
            case VORNA_OP_STOP_FOCUS: return StopLens(camera_.focusMotion, 1, 0, [this] { return protocol_.Focus(a_, 0); });
            case VORNA_OP_RAW_COMMAND: return Plain(protocol_.RawCommand(a_, static_cast<uint32_t>(n_)));
            case VORNA_OP_MENU_ON: {
                Bytes bytes = protocol_.Menu(a_, 1);
                if (protocol_.HasMenuMode()) camera_.menuMode = true;
                return Plain(bytes);
            }
            case VORNA_OP_MENU_OFF:
                camera_.menuMode = false;
                return Plain(protocol_.Menu(a_, 0));
            case VORNA_OP_FLIP: return Plain(protocol_.Flip(a_, 0));
            case VORNA_OP_APPLE_PEEL: return Plain(protocol_.ApplePeel(a_, 0));
            case VORNA_OP_RUN_PATTERN: return Plain(protocol_.Pattern(a_, n_, kPatternRun));
            case VORNA_OP_START_PATTERN_RECORDING: return Plain(protocol_.Pattern(a_, n_, kPatternStartRecording));
            case VORNA_OP_STOP_PATTERN_RECORDING: return Plain(protocol_.Pattern(a_, n_, kPatternStopRecording));
            case VORNA_OP_PATTERN_ACTION_2: return Plain(protocol_.Pattern(a_, n_, kPatternAction2));
            case VORNA_OP_MENU_ENTER: return Plain(protocol_.MenuEnter(a_, n_));
            default: {
                Bytes bytes = protocol_.PassThrough(a_, camera_.repeatBytes);
                return bytes.empty() ? Plain(bytes) : Repeatable(bytes);
            }
        }
    }

private:
    static Built Plain(Bytes bytes) { return {std::move(bytes), Ending::kPlain}; }
    static Built Repeatable(Bytes bytes) { return {std::move(bytes), Ending::kRepeatable}; }

    // A protocol with only a combined motion command moves every axis at its
    // current speed at once.
    Bytes OrMove(Bytes bytes) {
        if (!bytes.empty()) return bytes;
        return protocol_.Move(a_, camera_.panMotion, camera_.tiltMotion, camera_.zoomMotion);
    }

    bool AnyAxisMoving() const {
        return camera_.panMotion != 0 || camera_.tiltMotion != 0 || camera_.zoomMotion != 0;
    }

    // Stops one of pan, tilt or zoom. The stop is built with the axis' old
    // speed; the axis is cleared only afterwards, so the combined-motion
    // fallback already sees it still and keeps the other axes moving.
    template <typename SingleAxisStop>
    Built StopAxis(int& motion, int pan, int tilt, int zoom, SingleAxisStop singleAxisStop) {
        Bytes bytes = protocol_.StopAxes(a_, pan * motion, tilt * motion, zoom * motion, 0, 0);
        if (bytes.empty()) bytes = singleAxisStop();
        motion = 0;
        if (!bytes.empty()) return Plain(bytes);
        bytes = OrMove({});
        return AnyAxisMoving() ? Repeatable(bytes) : Plain(bytes);
    }

    template <typename SingleLensStop>
    Built StopLens(int& motion, int focus, int iris, SingleLensStop singleLensStop) {
        const int old = motion;
        Bytes bytes = protocol_.StopAxes(a_, 0, 0, 0, iris * old, focus * old);
        if (bytes.empty() && old != 0) bytes = singleLensStop();
        motion = 0;
        return Plain(bytes);
    }

    PtzCamera& camera_;
    CProtocol& protocol_;
    const uint32_t a_;
    const int n_;
};

void SendToLine(const PtzCamera& camera, const Bytes& bytes) {
    HostMessage record = MakeHostMessage(VORNA_TYPE_SERIAL, VORNA_FLAGS_SERIAL, camera.stream, bytes.data(),
                                         static_cast<uint32_t>(bytes.size()));
    const int result = SendToHost(&record);
    if (result != 0) LogError(Format("serial event ret %d", result));
}

}  // namespace

void ExecuteCommand(PtzCamera& camera, int opcode, double parm) {
    camera.lastCommandTime = NowMs();
    const int n = IntegerPart(parm);
    if (camera.protocol == nullptr) {
        LogToHost(VORNA_LOG_UNPROCESSABLE, Format("ptz port %s address %d missing protocol", camera.serialPort.c_str(),
                             static_cast<int>(camera.address)));
        return;
    }
    CProtocol& protocol = *camera.protocol;
    Built built = Handlers(camera, protocol, n).Run(opcode);
    if (built.ending == Ending::kRepeatable && !built.bytes.empty() && protocol.ShouldRepeat(NowMs(), 0))
        camera.repeatBytes = built.bytes;
    else
        camera.repeatBytes.clear();
    if (!built.bytes.empty() && camera.stream != 0) SendToLine(camera, built.bytes);
}

}  // namespace vorna
