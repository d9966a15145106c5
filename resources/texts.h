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

// ---- About box ------------------------------------------------------------
namespace about {
inline const QString Caption = u"关于 Quillpost Express"_s;
inline const QString Version = u"版本 1.00.2611.230"_s;
inline const QString Copyright =
    u"版权所有 (C) 2024-2026 Quillpost Express 开发组。保留所有权利。"_s;
inline const QString DesignsNotice =
    u"本程序所附的信纸、背景图案与设计受著作权法保护，仅供 Quillpost Express 的学员在培训中使用。"_s;
inline const QString StationeryNotice =
    u"未经 Quillpost Express 开发组书面许可，不得复制、修改或分发这些信纸与设计。"_s;
inline const QString ColumnFile = u"文件"_s;
inline const QString ColumnVersion = u"版本"_s;
inline const QString ColumnPath = u"路径"_s;
inline const QString UnknownVersion = u"<未知>"_s;
inline const QString Ok = u"确定"_s;
// The component rows, in alphabetical order of file name. A version of
// nullptr is not known: the row shows UnknownVersion and the bare name.
struct Component
{
    const char16_t *file;
    const char16_t *version;
    const char16_t *path;
};
inline constexpr Component Components[] = {
    {u"advapi32.dll", u"4.80.1675", u"C:\\WINDOWS\\SYSTEM\\ADVAPI32.DLL"},
    {u"comctl32.dll", u"5.80", u"C:\\WINDOWS\\SYSTEM\\COMCTL32.DLL"},
    {u"comdlg32.dll", u"4.72.3110", u"C:\\WINDOWS\\SYSTEM\\COMDLG32.DLL"},
    {u"gdi32.dll", u"4.10.1998", u"C:\\WINDOWS\\SYSTEM\\GDI32.DLL"},
    {u"kernel32.dll", u"4.10.1998", u"C:\\WINDOWS\\SYSTEM\\KERNEL32.DLL"},
    {u"msvcrt.dll", u"6.00.8397.0", u"C:\\WINDOWS\\SYSTEM\\MSVCRT.DLL"},
    {u"ole32.dll", u"4.71.2900", u"C:\\WINDOWS\\SYSTEM\\OLE32.DLL"},
    {u"oleaut32.dll", u"2.40.4275", u"C:\\WINDOWS\\SYSTEM\\OLEAUT32.DLL"},
    {u"qpaddr.dll", u"1.00.2611.230", u"C:\\Program Files\\Quillpost Express\\QPADDR.DLL"},
    {u"qpcore.dll", u"1.00.2611.230", u"C:\\Program Files\\Quillpost Express\\QPCORE.DLL"},
    {u"qpfolder.dll", u"1.00.2611.230", u"C:\\Program Files\\Quillpost Express\\QPFOLDER.DLL"},
    {u"qpmime.dll", nullptr, u"qpmime.dll"},
    {u"qpres.dll", u"1.00.2611.1", u"C:\\Program Files\\Quillpost Express\\QPRES.DLL"},
    {u"qpsend.dll", u"1.00.2611.230", u"C:\\Program Files\\Quillpost Express\\QPSEND.DLL"},
    {u"qpstore.dll", u"1.00.2611.230", u"C:\\Program Files\\Quillpost Express\\QPSTORE.DLL"},
    {u"qpwizard.dll", nullptr, u"qpwizard.dll"},
    {u"riched20.dll", u"5.30.23.1200", u"C:\\WINDOWS\\SYSTEM\\RICHED20.DLL"},
    {u"shell32.dll", u"4.72.3110.1", u"C:\\WINDOWS\\SYSTEM\\SHELL32.DLL"},
    {u"shlwapi.dll", u"5.00.2614.3500", u"C:\\WINDOWS\\SYSTEM\\SHLWAPI.DLL"},
    {u"user32.dll", u"4.10.2222", u"C:\\WINDOWS\\SYSTEM\\USER32.DLL"},
    {u"version.dll", nullptr, u"version.dll"},
};
}  // namespace about

// ---- Send and receive ---------------------------------------------------
// Before a send: an Outbox message names the first account neither as
// sender nor as recipient.
inline const QString OutboxWithoutAccount = u"发件箱中的部分邮件没有指定账号,请检查。"_s;
}  // namespace texts
