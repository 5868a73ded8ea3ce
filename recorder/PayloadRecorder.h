// Records what a host application sends, for the host's own tests: each payload that the telemetry library would
// upload.
//
// A recorder puts the library into its test mode, in which nothing is uploaded. The library stays in it until the
// process ends, also after the recorder's end. Payloads hold what is sent in clear text: serial numbers and names of
// files among it. One recorder at a time; one thread at a time may use it, the wrapper and the library.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

namespace Corvane
{

class PayloadRecorder
{
public:
    // Asks first whether the user has opted in: if not, nothing is read or started. Then enters the test mode.
    PayloadRecorder();

    // A callback that does nothing takes the recorder's place.
    ~PayloadRecorder();

    PayloadRecorder(const PayloadRecorder&) = delete;
    PayloadRecorder& operator=(const PayloadRecorder&) = delete;

    // Why nothing is recorded, as in "SetTestingFlags returned 7"; empty when the library is in test mode.
    const std::string& Refusal() const { return refusal; }

    // In the order sent.
    const std::vector<Veltrane::TaviDesktopSDK::JsonValue>& Payloads() const { return payloads; }

    // Whether a payload was lost because memory did not suffice.
    bool HasLostAny() const { return hasLostAny; }

    // How many payloads of an event came. `event` is its name, a constant of Vocabulary.h. An event without a name is
    // known by a key of its "content_meta" or "entitlement_properties", as COMMON_FILE_NAME or CV_EXPIRY_DAYS.
    std::size_t CountOf(const std::wstring& event) const;

    // The JSON text of a payload, counted from 0: one line of UTF-8. Throws std::out_of_range.
    std::string JsonText(std::size_t index) const;

    // Writes the JSON text of each payload as a line, which "tavi_check --captured" judges.
    void WriteLines(std::ostream& output) const;

private:
    static int Record(const Veltrane::TaviDesktopSDK::JsonValue& payload, void* context,
                      Veltrane::TaviDesktopSDK::JsonValue& reply);

    std::string refusal;
    std::vector<Veltrane::TaviDesktopSDK::JsonValue> payloads;
    bool hasLostAny = false;
};

} // namespace Corvane
