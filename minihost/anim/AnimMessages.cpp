#include "maya/MAnimMessage.h"
#include "maya/MObjectArray.h"
#include "maya/MTimerMessage.h"
#include "minihost/Host.h"
#include "minihost/anim/KeyframeDelta.h"
#include "minihost/api/Callbacks.h"
#include "minihost/api/Status.h"

using minihost::Host;
using minihost::KeyframesEdited;
using minihost::Timers;

MCallbackId MAnimMessage::addAnimKeyframeEditedCallback(MObject& curve, MNodeObjArray function,
                                                        void* clientData, MStatus* status) {
    if (!curve.hasFn(MFn::kAnimCurve))
        return minihost::Tell(status, MS::kInvalidParameter, MCallbackId{0});
    return minihost::AddCallback(
        {"KeyframesEdited", ""}, reinterpret_cast<const void*>(function),
        [function, clientData, curve](const void* what) {
            const auto& edited = *static_cast<const KeyframesEdited*>(what);
            if (edited.curve != curve.object()) return;
            MObjectArray deltas;
            for (const auto& delta : edited.deltas) deltas.append(MObject(delta));
            MObject node = curve;
            function(node, deltas, clientData);
        },
        status);
}

MStatus MAnimMessage::flushAnimKeyframeEditedCallbacks() {
    return MS::kSuccess;
}

MCallbackId MTimerMessage::addTimerCallback(float period, MElapsedTimeFunction function,
                                            void* clientData, MStatus* status) {
    MCallbackId id = 0;
    if (function) {
        Host& host = Host::Get();
        id = host.timers.Add(
            double{period},
            [function, clientData](const Timers::Tick& tick) {
                function(static_cast<float>(tick.elapsed), static_cast<float>(tick.last),
                         clientData);
            },
            host.modules.OwnerOf(reinterpret_cast<const void*>(function)));
    }
    return minihost::Tell(status, id ? MS::kSuccess : MS::kInvalidParameter, id);
}
