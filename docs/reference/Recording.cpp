#include "Recording.h"

#include "OutputCapture.h"
#include "PayloadRecorder.h"

Recording Record(const std::function<void()>& reports)
{
    const OutputCapture capture;
    PayloadRecorder recorder;
    reports();
    return {recorder.payloads, capture.Text()};
}
