#include "pomvarsrv/catalogue/FrontEndProgram.h"

#include <QFile>

#include <sys/stat.h>

namespace pomvar::srv {

namespace {

QString said(const char* text, const QString& program)
{
    return QCoreApplication::translate("pomvar::srv::FrontEndProgram", text).arg(program);
}

} // namespace

QString FrontEndProgram::problem(const QString& program, const QString& server)
{
    struct stat file, own;
    // lstat: a symbolic link could lead anywhere.
    if (::lstat(QFile::encodeName(program).constData(), &file) != 0)
        return said(QT_TRANSLATE_NOOP("pomvar::srv::FrontEndProgram", "%1 does not exist."),
                    program);
    if (!S_ISREG(file.st_mode))
        return said(QT_TRANSLATE_NOOP("pomvar::srv::FrontEndProgram", "%1 is not a regular file."),
                    program);
    if (::stat(QFile::encodeName(server).constData(), &own) != 0 || file.st_uid != own.st_uid)
        return said(QT_TRANSLATE_NOOP("pomvar::srv::FrontEndProgram",
                                      "%1 does not belong to the owner of Pomvar's files."),
                    program);
    if (file.st_mode & (S_IWGRP | S_IWOTH))
        return said(
            QT_TRANSLATE_NOOP("pomvar::srv::FrontEndProgram", "%1 can be changed by other users."),
            program);
    return {};
}

} // namespace pomvar::srv
