#pragma once

#include <QAbstractListModel>

#include <string>
#include <vector>

namespace kestrix::live {

// One row of the session list, under the list's own keys. Texts are UTF-8.
struct SessionRow {
    std::string DataName;
    std::string Function;
    std::string Parameters;
    std::string Result;
    std::string DateTime;
    std::string Comments;
};

// The measurements of this session, oldest first. The roles are the keys of a row, and "height" in points.
class SessionList : public QAbstractListModel {
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged FINAL)

  public:
    enum Roles {
        DataNameRole = Qt::UserRole,
        FunctionRole,
        ParametersRole,
        ResultRole,
        DateTimeRole,
        CommentsRole,
        HeightRole
    };

    // height: of the row, in points.
    void append(const SessionRow& row, double height);
    void removeAll();

    int count() const { return static_cast<int>(rows_.size()); }
    const SessionRow& row(int number) const { return rows_.at(static_cast<std::size_t>(number)).row; }
    double height(int number) const { return rows_.at(static_cast<std::size_t>(number)).height; }

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

  Q_SIGNALS:
    void countChanged();
    // The view brings the last row to its bottom, without animation.
    void scrollToLastRow();

  private:
    struct Measured {
        SessionRow row;
        double height;
    };
    std::vector<Measured> rows_;
};

}  // namespace kestrix::live
