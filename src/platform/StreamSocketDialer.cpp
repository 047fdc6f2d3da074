#include "platform/StreamSocketDialer.h"

namespace kestrix::platform {

FailedStep stepOfSocketError(int error) {
    switch (error) {
        case QAbstractSocket::ConnectionRefusedError:
            return FailedStep::Refused;
        case QAbstractSocket::HostNotFoundError:
            return FailedStep::Missing;
        case QAbstractSocket::SocketAccessError:
            return FailedStep::Rights;
        case QAbstractSocket::AddressInUseError:
            return FailedStep::Busy;
        case QAbstractSocket::SocketTimeoutError:
            return FailedStep::NoAnswer;
        case QAbstractSocket::NetworkError:
            return FailedStep::Adapter;
        default:
            return FailedStep::Other;
    }
}

}  // namespace kestrix::platform
