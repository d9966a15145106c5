#pragma once

// Every text the user sees, written exactly as shown, named by role.
// Where a text joins a headline and a reason, the joint is two CR
// characters (u"\r\r"), as every box of the program shows them.

#include <QString>

namespace texts {
using namespace Qt::Literals::StringLiterals;

// ---- Program-wide -------------------------------------------------------
inline const QString AppTitle = u"Quillpost Express"_s;
inline const QString ErrorTitle = u"出错"_s;

// ---- Mail store ---------------------------------------------------------
inline const QString FolderOutOfRange = u"选定文件参数错误,超出范围!"_s;
// Shown by the application's error guard; the reason follows after CR CR.
inline const QString OperationAbandoned = u"操作未能完成，所有文件保持不变。"_s;
inline const QString TooManyMails = u"一个文件夹最多只能存放 101 封邮件。"_s;
inline const QString TooManyAccounts = u"最多只能设置 21 个邮件账号。"_s;
inline const QString BadStoredContent = u"邮件文件已损坏：邮件正文格式不正确。"_s;
inline const QString NumberOverflow = u"数值超出范围。"_s;
inline const QString CannotWriteFile = u"无法写入文件：%1"_s;  // %1: file path
inline const QString BadPosition = u"位置超出范围。"_s;
}  // namespace texts
