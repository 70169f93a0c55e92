#include "engine/catalog/catalogprocedures.h"
#include "engine/catalog/securityids.h"

namespace engine {

namespace {

const std::vector<ResultColumn>& resultColumns() {
    static const std::vector<ResultColumn> columns{
        {QStringLiteral("UserName"), sysnameType, false},
        {QStringLiteral("GroupName"), sysnameType, true},
        {QStringLiteral("LoginName"), sysnameType, true},
        {QStringLiteral("DefDBName"), sysnameType, true},
        {QStringLiteral("UserID"), smallintType, false},
        {QStringLiteral("SID"), {.id = TypeId::VarBinary, .length = 85}, true},
    };
    return columns;
}

QStringList rolesOf(const Database& database, const QString& user) {
    QStringList roles;
    if (user == QLatin1String("dbo")) roles.append(QStringLiteral("db_owner"));
    for (const RoleMember& member : database.roleMembers) {
        if (nameKey(member.user) == nameKey(user)) roles.append(member.role);
    }
    return roles.isEmpty() ? QStringList{QStringLiteral("public")} : roles;
}

}  // namespace

qint64 spHelpUser(const ProcedureContext& context, const ProcedureRequest& call, ResultSink& sink) {
    const ProcedureArguments arguments(call, {"@name_in_db"});
    const Database& database = context.database;
    QStringList users = database.users;
    if (const auto name = arguments.text("@name_in_db")) {
        const QString user = database.findUser(*name);
        if (user.isEmpty()) {
            throw SqlError(
                15198, 16,
                QStringLiteral("The name supplied (%1) is not a user, role, or aliased login.").arg(*name));
        }
        users = QStringList{user};
    }
    sink.columns(resultColumns());
    qint64 rows = 0;
    for (const QString& user : users) {
        const Login* login = loginOfUser(context.world, database, user);
        for (const QString& role : rolesOf(database, user)) {
            if (sink.cancelled()) return rows;
            sink.row(std::vector<Value>{user, role, login == nullptr ? Value() : Value(login->name),
                                        login == nullptr ? Value() : Value(login->defaultDatabase),
                                        database.userId(user), securityId(login)});
            ++rows;
        }
    }
    return rows;
}

}  // namespace engine
