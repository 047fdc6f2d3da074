#include "platform/StreamSocketDialer.h"

#include <QRegularExpression>

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

std::string textOfSocketError(const QString& said) {
    static const QRegularExpression call(QStringLiteral("^Q\\w+::\\w+: "));
    return QString(said).remove(call).toStdString();
}

}  // namespace kestrix::platform
