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
// The buttons of the program's own boxes.
inline const QString ButtonOk = u"确定"_s;
inline const QString ButtonYes = u"是(&Y)"_s;
inline const QString ButtonNo = u"否(&N)"_s;
// A command whose message changed or went meanwhile in its file acts on
// nothing else.
inline const QString MailGone =
    u"这封邮件已经不在原来的位置，可能已被移动或删除。列表已经更新，请重新选择。"_s;

// ---- Mail store ---------------------------------------------------------
// Shown by the application's error guard; the reason follows after CR CR.
inline const QString OperationAbandoned = u"操作未能完成，所有文件保持不变。"_s;
inline const QString TooManyAccounts = u"最多只能设置 21 个邮件账号。"_s;
inline const QString BadStoredContent = u"邮件文件已损坏：邮件正文格式不正确。"_s;
// Why a data file could not be written or read: %1 the file's path, %2 one
// of the reasons below.
inline const QString CannotWriteFile = u"无法写入文件“%1”：%2"_s;
inline const QString CannotReadFile = u"无法读取文件“%1”：%2"_s;
inline const QString ReasonDiskFull = u"磁盘已满。请删除一些不需要的文件，腾出空间后再试。"_s;
inline const QString ReasonTooLarge =
    u"文件超出了系统允许的大小。请删除这个文件夹中一些不需要的邮件，或把数据文件夹放到允许更大文件的磁盘上。"_s;
inline const QString ReasonNoPermission = u"没有访问权限。请检查该文件及其所在文件夹的权限。"_s;
inline const QString ReasonReadOnly =
    u"磁盘或文件夹是只读的。请取消磁盘的写保护，或把数据文件夹放到可以写入的位置。"_s;
// A data file set read-only by itself, in a folder that can be written.
inline const QString ReasonFileReadOnly =
    u"该文件被设置为只读，程序不会替换它。请在文件属性中取消“只读”（或在终端中运行 chmod u+w 加上文件名），然后再试。"_s;
inline const QString ReasonIsFolder = u"该位置上是一个文件夹，而不是文件。请将它移走或改名。"_s;
// A file the program itself had just written was gone when it came to use it.
inline const QString ReasonVanished =
    u"刚写好的文件不见了，可能被其他程序删除或移走。请确认只打开了一个 Quillpost Express，然后再试。"_s;
inline const QString ReasonIoError =
    u"读写磁盘时出错。请检查磁盘或 U 盘是否连接良好；如果问题反复出现，请先把数据文件夹复制到别处保存，并请老师或管理员检查磁盘。"_s;
// %1: the error number
inline const QString ReasonOther =
    u"系统错误 %1。请稍后再试；如果问题仍然存在，请把这条信息告诉老师或管理员。"_s;
// The journal of a change a kill interrupted stands but cannot be read:
// %1 its path, %2 one of the reasons above.
inline const QString JournalUnreadable =
    u"程序上次保存更改时被中断，记录这次更改的文件“%1”现在无法读取：%2\r\r为了不丢失邮件，程序没有改动任何文件。请解决上述问题后重新启动程序。"_s;
// Follows, after CR CR, the box of a change start-up could not complete.
inline const QString StartUpStopped = u"程序现在将退出。"_s;
// A file whose "number" is not the number of its records: %1 the file's
// name, %2 what its count says, %3 the records it holds.
inline const QString MailCountDisagrees =
    u"文件“%1”中记录的邮件数（%2）与其中实际的邮件数（%3）不一致。程序将显示全部 %3 封邮件，并在下次保存时写入正确的数目，不会删除任何邮件。"_s;
inline const QString AccountCountDisagrees =
    u"文件“%1”中记录的账号数（%2）与其中实际的账号数（%3）不一致。程序将使用全部 %3 个账号，并在下次保存时写入正确的数目，不会删除任何账号。"_s;
// Parts of a data file holding bytes no text holds were copied aside: %1
// the file's name, %2 how many parts, %3 the copy's name, %4 the folder
// holding both.
// The same in a data folder opened read-only, where nothing is saved: %1
// the file's name, %2 how many parts.
inline const QString PartsNotShown =
    u"文件“%1”中有 %2 处内容含有无法识别的字符（例如空字符），无法显示。这些内容仍原样保存在该文件中，程序不会改动它。"_s;
inline const QString PartsSetAside =
    u"文件“%1”中有 %2 处内容含有无法识别的字符（例如空字符），无法显示。为了不丢失这些内容，程序已把它们原样保存到文件“%3”中，位于文件夹“%4”。文件中的其余内容照常使用。"_s;
// A commit whose journal was written but whose renames failed: its change
// stands and the next start-up finishes it. Follows CannotWriteFile's text.
inline const QString CommitUnfinished = u"更改已经保存，将在程序下次启动时全部生效。"_s;
// The error guard's headline when some files did change.
inline const QString OperationIncomplete = u"操作未能全部完成。"_s;
// A send-and-receive run whose send went through and whose receive did not.
inline const QString SentButNotReceived =
    u"邮件已经发出，但接收未能完成：收件箱和服务器上等待的邮件保持不变。"_s;
// A file that is not a data file at all is kept under another name: %1 its
// name, %2 the new name, %3 the folder holding both.
inline const QString DamagedFileSetAside =
    u"文件“%1”无法作为数据文件读取。为了不丢失其中的内容，它已被改名为“%2”，保存在文件夹“%3”中。程序将把它当作空文件继续运行。"_s;

// What a change was, for the box of a change the disk refused after the
// windows had shown it. %1, where there is one: the message's subject.
namespace unsaved {
inline const QString Move = u"· 把邮件“%1”移到“已删除邮件”"_s;
inline const QString DeleteForGood = u"· 彻底删除邮件“%1”"_s;
inline const QString MarkRead = u"· 把邮件“%1”标为已读"_s;
inline const QString Draft = u"· 把邮件“%1”存入“草稿”"_s;
inline const QString Outbox = u"· 把邮件“%1”放入“发件箱”"_s;
inline const QString SendReceive = u"· 发送和接收邮件"_s;
inline const QString Accounts = u"· 更改邮件账号"_s;
// %1: the data files, by name.
inline const QString Files = u"· 更改文件 %1"_s;
inline const QString NoSubject = u"（无主题）"_s;
// %1 the changes, one a line; %2 the reason (CannotWriteFile's text).
inline const QString NotSaved =
    u"下列更改没能存入文件：\r%1\r\r%2\r\r各窗口已恢复为文件中保存的内容，文件中的邮件一封也没有丢失。"_s;
// After the box of a change that stands but is not finished: %1 the changes
// made after it, which were not saved.
inline const QString NotSavedAfter = u"随后的这些更改没能存入文件，已经撤销：\r%1"_s;
}  // namespace unsaved

// ---- Window layer, shared ----------------------------------------------
inline const QString HeaderStyleFailed = u"表头定位出错"_s;

// ---- Main window: panes ------------------------------------------------
inline const QString LocalFolders = u"本地文件夹"_s;
inline const QString InboxName = u"收件箱"_s;
inline const QString OutboxName = u"发件箱"_s;
inline const QString SentItemsName = u"已发送邮件"_s;
inline const QString DeletedItemsName = u"已删除邮件"_s;
inline const QString DraftsName = u"草稿"_s;
inline const QString LocalFoldersNote =
    u"为 POP 账号使用本地文件夹,并用它们存储其他账号上的邮件"_s;
inline const QString SummaryFolderColumn = u"文件夹"_s;
inline const QString SummaryUnreadColumn = u"未读"_s;
inline const QString SummaryTotalColumn = u"总计"_s;
inline const QString SendAndReceiveAll = u"发送和接收全部邮件"_s;
inline const QString PreviewFrom = u"发件人:"_s;
inline const QString PreviewTo = u"收件人:"_s;
inline const QString PreviewSubject = u"主题:"_s;
inline const QString NoMailSelected = u"未选择任何邮件"_s;
// In the status bar while a folder not yet in memory is read.
inline const QString ReadingFolder = u"正在读取“%1”中的邮件……"_s;
inline const QString ColumnFrom = u"发件人"_s;
inline const QString ColumnTo = u"收件人"_s;
inline const QString ColumnSubject = u"主题"_s;
inline const QString ColumnReceived = u"接收时间"_s;
inline const QString ColumnSent = u"发送时间"_s;
inline const QString ColumnAccount = u"账号"_s;
inline const QString WorkingOnline = u"正在联机工作"_s;
inline const QString StartPageWelcome = u"欢迎使用 Quillpost Express"_s;
inline const QString StartPageHint = u"在左侧的文件夹列表中选择一个文件夹，即可查看其中的邮件。"_s;
inline const QString AskSendOutboxOnClose = u"“发件箱”中还有未发的邮件。是否现在发送？"_s;
inline const QString AskDeleteForGood = u"你确实要彻底删除这些邮件吗?"_s;
// After a send run that found a message it may not send; the main window's
// closing and the compose window's send both show it.
inline const QString NameCheckTitle = u"检查姓名"_s;
inline const QString NameCheckFailed = u"未找到匹配项,请检查邮件填写是否有误"_s;

// ---- Main window: toolbar (caption, tooltip) ----------------------------
inline const QString TbNewMail = u"新邮件"_s;
inline const QString TbReply = u"回复作者"_s;
inline const QString TbReplyTip = u"答复发件人"_s;
inline const QString TbReplyAll = u"全部回复"_s;
inline const QString TbReplyAllTip = u"全部答复"_s;
inline const QString TbForward = u"转发"_s;
inline const QString TbPrint = u"打印"_s;
inline const QString TbDelete = u"删除"_s;
inline const QString TbSendReceive = u"发送/接收"_s;
inline const QString TbAddressBook = u"通讯薄"_s;
inline const QString TbFind = u"查找"_s;
inline const QString TbEncoding = u"编码"_s;
inline const QString ReceiveAll = u"接收全部邮件"_s;
inline const QString SendAll = u"发送全部邮件"_s;

// ---- Main window: menu bar ----------------------------------------------
// Captions keep their mnemonics; a shortcut written into a caption also works.
inline const QString MenuFile = u"文件(&F)"_s;
inline const QString MenuFileNew = u"新建(&N)"_s;
inline const QString MenuNewMail = u"邮件(&M) "_s;  // the trailing blank is part of it
inline const QString MenuNewPost = u"新闻帖子(&P)"_s;
inline const QString MenuNewContact = u"联系人(&C)..."_s;
inline const QString MenuNewFolder = u"文件夹(&F)..."_s;
inline const QString MenuOpen = u"打开(&O)"_s;
inline const QString MenuSaveAs = u"另存为(&A)..."_s;
inline const QString MenuSaveAttachments = u"保存附件(&V)..."_s;
inline const QString MenuImport = u"导入(&I)"_s;
inline const QString MenuExport = u"导出(&E)"_s;
inline const QString MenuPrint = u"打印(&P)..."_s;
inline const QString MenuSwitchIdentity = u"切换标识(&W)..."_s;
inline const QString MenuProperties = u"属性(&R)"_s;
inline const QString MenuExit = u"退出(&X)"_s;
inline const QString MenuEdit = u"编辑(&E)"_s;
inline const QString MenuCopy = u"复制(&C)"_s;
inline const QString MenuSelectAll = u"全选(&A)"_s;
inline const QString MenuFindMessage = u"查找(&F)"_s;
inline const QString MenuMoveToFolder = u"移动到文件夹(&V)..."_s;
inline const QString MenuCopyToFolder = u"复制到文件夹(&O)..."_s;
inline const QString MenuDelete = u"删除(&D)"_s;
inline const QString MenuMarkRead = u"标记为已读(&M)"_s;
inline const QString MenuMarkUnread = u"标记为未读(&U)"_s;
inline const QString MenuMarkAllRead = u"全部标记为已读(&L)"_s;
inline const QString MenuView = u"查看(&V)"_s;
inline const QString MenuCurrentView = u"当前视图(&V)"_s;
inline const QString MenuSortBy = u"排序方式(&Y)"_s;
inline const QString MenuColumns = u"列(&C)..."_s;
inline const QString MenuLayout = u"布局(&L)..."_s;
inline const QString MenuTextSize = u"文字大小(&X)"_s;
inline const QString MenuEncoding = u"编码(&D)"_s;
inline const QString MenuPrevious = u"上一封邮件(&V)"_s;
inline const QString MenuNext = u"下一封(&N)"_s;
inline const QString MenuGoToFolder = u"转到文件夹(&F)..."_s;
inline const QString MenuStop = u"停止(&P)"_s;
inline const QString MenuRefresh = u"刷新(&R)"_s;
// Shown only when the program was started with an exercise; CTRL+E works.
inline const QString MenuExercise = u"练习(&E)  CTRL+E"_s;
inline const QString MenuTools = u"工具(&T)"_s;
inline const QString MenuSendReceive = u"发送和接收(&S)"_s;
inline const QString MenuRSMail = u"发送和接收全部邮件(&A)  CTRL+M"_s;
inline const QString MenuReceiveMail = u"接收全部邮件(&R)"_s;
inline const QString MenuSendMail = u"发送全部邮件(&S)"_s;
inline const QString MenuSynchronize = u"全部同步(&Z)"_s;
inline const QString MenuAddressBook = u"通讯簿(&B)..."_s;
inline const QString MenuAddSender = u"将发件人添加到通讯簿(&D)"_s;
inline const QString MenuRules = u"邮件规则(&R)"_s;
inline const QString MenuAccounts = u"账号(&A)..."_s;
inline const QString MenuOptions = u"选项(&O)..."_s;
inline const QString MenuMessage = u"邮件(&M)"_s;
inline const QString MenuMsgNew = u"新邮件(&N)"_s;
inline const QString MenuMsgReply = u"答复发件人(&R)"_s;
inline const QString MenuMsgReplyAll = u"全部答复(&A)"_s;
inline const QString MenuMsgForward = u"转发(&F)"_s;
inline const QString MenuMsgForwardAttached = u"作为附件转发(&H)"_s;
inline const QString MenuMsgBlockSender = u"阻止发件人(&B)..."_s;
inline const QString MenuHelp = u"帮助(&H)"_s;
inline const QString MenuContents = u"内容和索引(&C)"_s;
inline const QString MenuOnline = u"网上支持(&O)"_s;
inline const QString MenuAbout = u"关于 Quillpost Express(&A)"_s;

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

// ---- Compose window -------------------------------------------------------
namespace compose {
inline const QString Caption = u"新邮件"_s;
// Each caption's underlined letter moves to its field.
inline const QString FromLabel = u"发件人(&R):"_s;
inline const QString ToLabel = u"收件人(&D):"_s;
inline const QString CcLabel = u"抄送(&C):"_s;
inline const QString SubjectLabel = u"主题(&S):"_s;
inline const QString AttachmentsLabel = u"附件:"_s;
// Menu bar; only the named entries of the window act.
inline const QString MenuFile = u"文件(&F)"_s;
inline const QString MenuNew = u"新建(&N)"_s;
inline const QString MenuSend = u"发送邮件(&M)"_s;
inline const QString MenuSendLater = u"以后发送(&N)"_s;
// The blanks before the shortcut are part of the caption; CTRL+S works.
inline const QString MenuSave = u"保存(&S)             CTRL+S"_s;
inline const QString MenuSaveAs = u"另存为(&A)..."_s;
inline const QString MenuProperties = u"属性(&R)"_s;
inline const QString MenuClose = u"关闭(&C)"_s;
inline const QString MenuEdit = u"编辑(&E)"_s;
inline const QString MenuUndo = u"撤消(&U)"_s;
inline const QString MenuCut = u"剪切(&T)"_s;
inline const QString MenuCopy = u"复制(&C)"_s;
inline const QString MenuPaste = u"粘贴(&P)"_s;
inline const QString MenuSelectAll = u"全选(&A)"_s;
inline const QString MenuFind = u"查找(&F)..."_s;
inline const QString MenuView = u"查看(&V)"_s;
inline const QString MenuAllHeaders = u"所有邮件头(&A)"_s;
inline const QString MenuToolbar = u"工具栏(&T)"_s;
inline const QString MenuStatusBar = u"状态栏(&B)"_s;
inline const QString MenuInsert = u"插入(&I)"_s;
inline const QString MenuInsertAttachment = u"文本附件(&A)"_s;
inline const QString MenuInsertPicture = u"图片(&P)..."_s;
inline const QString MenuInsertSignature = u"签名(&S)"_s;
inline const QString MenuFormat = u"格式(&O)"_s;
inline const QString MenuFont = u"字体(&F)..."_s;
inline const QString MenuParagraph = u"段落(&P)..."_s;
inline const QString MenuPlainText = u"纯文本(&X)"_s;
inline const QString MenuTools = u"工具(&T)"_s;
inline const QString MenuSpelling = u"拼写检查(&S)..."_s;
inline const QString MenuCheckNames = u"检查姓名(&K)"_s;
inline const QString MenuSelectRecipients = u"选择收件人(&L)..."_s;
inline const QString MenuMessage = u"邮件(&M)"_s;
inline const QString MenuPriority = u"设置优先级(&P)"_s;
inline const QString MenuFlag = u"标记邮件(&G)"_s;
inline const QString MenuHelp = u"帮助(&H)"_s;
inline const QString MenuContents = u"内容和索引(&C)"_s;
inline const QString PopupDelete = u"删除"_s;
// Tool bar (caption and tooltip); only Send and Attach act.
inline const QString TbSend = u"发送"_s;
inline const QString TbPrint = u"打印"_s;
inline const QString TbFind = u"查找"_s;
inline const QString TbCheckNames = u"检查"_s;
inline const QString TbEncoding = u"编码"_s;
inline const QString TbAddressBook = u"通讯簿"_s;
inline const QString TbAttach = u"附加"_s;
// The attachment chooser, in the chooser's "description|pattern" form.
inline const QString AttachTitle = u"插入附件"_s;
inline const QString AttachFilter = u"All Files (*.*)|*.*"_s;
// Boxes. CR CR parts a headline from its reason.
inline const QString CannotSendNoRecipient = u"无法发送邮件。\r\r必须为邮件指定收件人。"_s;
inline const QString CannotSaveNoSender = u"无法保存邮件。\r\r必须为邮件指定发件人。"_s;
inline const QString NoAccountYet = u"还未添加账号,请先设置账号!"_s;
inline const QString DraftSavedTitle = u"已经保存的邮件"_s;
inline const QString DraftSaved = u"该邮件已存储在“草稿”文件夹中。"_s;
// One sentence broken over three lines by single CRs.
inline const QString SendLaterNotice = u"当发送电子邮件时,邮件将首先放置在“发件箱”\r"
                                       u"文件夹中,并在下次使用“发送和接收”命令时发\r"
                                       u"送出去。"_s;
// Another message asked for while this one is neither sent nor saved.
inline const QString StillWriting =
    u"正在编写的邮件尚未发送，也未保存。请先发送、保存或关闭它，然后再打开其他邮件。"_s;
// Fields longer than the folder file keeps: %1 one line per field, each
// TooLongLine with %1 the field's name, %2 its bytes, %3 the bytes kept,
// %4 the characters kept.
inline const QString TooLongForFile =
    u"下列内容超出了邮件文件能够保存的长度，保存时超出的部分将被截去：\r\r%1\r\r"
    u"选择“是”，只保存能够放下的部分；选择“否”，返回继续编辑。"_s;
inline const QString TooLongLine = u"%1：%2 字节，只能保存 %3 字节（保留前 %4 个字符）"_s;
// By the order of compose::Overflow::Field.
inline const QString FieldNames[] = {u"发件人"_s, u"收件人"_s, u"抄送"_s,
                                     u"主题"_s,   u"正文"_s,   u"附件"_s};
// Closing the window with changes that were neither sent nor saved; Yes
// closes and drops them.
inline const QString AskDiscardOnClose = u"此邮件尚未发送，也未保存。\r\r是否放弃此邮件并关闭窗口？"_s;
inline const QString AskDiscardOnNew = u"此邮件尚未发送，也未保存。\r\r是否放弃此邮件并新建一封？"_s;
}  // namespace compose

// ---- Send-and-receive progress dialog --------------------------------------
namespace sendreceive {
inline const QString Connecting = u"正在连接服务器..."_s;
inline const QString Working = u"正在收发信息......请稍候"_s;
inline const QString Hide = u"隐藏(&H)"_s;
inline const QString Stop = u"停止(&S)"_s;
inline const QString Details = u"详细资料(&D) >>"_s;
}  // namespace sendreceive

// ---- Read window ------------------------------------------------------------
namespace read {
inline const QString DateCaption = u"日期:"_s;
inline const QString AttachmentsCaption = u"附件:"_s;
// Tool bar (caption, tooltip where it differs).
inline const QString TbReply = u"答复"_s;
inline const QString TbReplyTip = u"答复发件人"_s;
inline const QString TbReplyAll = u"全部答复"_s;
inline const QString TbForward = u"转发"_s;
inline const QString TbPrint = u"打印"_s;
inline const QString TbDelete = u"删除"_s;
inline const QString TbPrevious = u"上一封"_s;
inline const QString TbPreviousTip = u"上一封邮件"_s;
inline const QString TbNext = u"下一封"_s;
inline const QString TbNextTip = u"下一封邮件"_s;
inline const QString TbAddressBook = u"通讯簿"_s;
// Menu bar. The blanks before a shortcut are part of the caption; the
// shortcut is only shown, like the entries themselves these do nothing.
inline const QString MenuClose = u"关闭(&C)"_s;
inline const QString MenuNextMessage = u"下一封(&N)"_s;
inline const QString MenuPreviousMessage = u"上一封邮件(&P)    CTRL+<"_s;
inline const QString MenuReply = u"答复发件人(&R)      CTRL+R"_s;
inline const QString MenuReplyAll = u"全部答复            CTRL+SHIFT+R"_s;
inline const QString MenuForward = u"转发(&F)"_s;
// The attachment list's pop-up menu; only Save as acts.
inline const QString PopupTitle = u"弹出"_s;
inline const QString PopupOpen = u"打开(&O)"_s;
inline const QString PopupPrint = u"打印(&P)"_s;
inline const QString PopupQuickView = u"快速察看(&Q)"_s;
inline const QString PopupSaveAs = u"另存为(&A)"_s;
inline const QString PopupAdd = u"添加(&D)"_s;
inline const QString PopupRemove = u"删除(&M)"_s;
inline const QString SaveTitle = u"另存为"_s;
// In the chooser's own "description|pattern|" form, trailing bar included.
inline const QString SaveFilter = u"All Files(*.*)|*.*|"_s;
// Saving an attachment adds its line to a file already there: %1 its name.
inline const QString AskAppendToFile =
    u"文件“%1”已经存在。\r\r是否把附件的内容添加到这个文件的末尾？"_s;
// The whole content of a saved attachment, written quoted with CR LF after.
inline const QString AttachmentMarker = u"This is Quillpost Text"_s;
}  // namespace read

// ---- Accounts ---------------------------------------------------------------
namespace accounts {
// The accounts dialog.
inline const QString Caption = u"Internet 账号"_s;
inline const QString TabAll = u"全部"_s;
inline const QString TabMail = u"邮件"_s;
inline const QString TabNews = u"新闻"_s;
inline const QString TabDirectory = u"目录服务"_s;
inline const QString ColumnAccount = u"账号"_s;
inline const QString ColumnType = u"类型"_s;
inline const QString ColumnConnection = u"连接"_s;
inline const QString RowTypeMail = u"邮件"_s;
inline const QString RowAnyConnection = u"任何可用连接"_s;
inline const QString AddPicture = u"添加"_s;  // drawn into the add button's picture
inline const QString Remove = u"删除(&R)"_s;
inline const QString Properties = u"属性(&P)"_s;
inline const QString SetDefault = u"设为默认值(&D)"_s;
inline const QString Import = u"导入(&I)..."_s;
inline const QString Export = u"导出(&E)..."_s;
inline const QString SetOrder = u"设置顺序(&S)..."_s;
inline const QString Close = u"关闭"_s;
inline const QString AddMenu = u"按钮菜单"_s;
inline const QString AddMail = u"邮件(&M)..."_s;
inline const QString AddNews = u"新闻(&N)..."_s;
inline const QString AddDirectory = u"目录服务(&D)..."_s;
inline const QString AskDeleteAccount = u"您确信要删除'%1'账号吗?"_s;  // %1: logon name
// The account file was changed by another program while the list showed
// it; nothing was changed, and the list now shows the file.
inline const QString ListOutdated =
    u"账号文件已被其他程序更改，列表已重新读取。\r\r请重新选择要更改的账号。"_s;

// The new-account wizard, all five pages.
inline const QString WizardCaption = u"Internet 连接向导"_s;
inline const QString Back = u"< 上一步(&B)"_s;
inline const QString Next = u"下一步(&N) >"_s;
inline const QString Cancel = u"取消"_s;
inline const QString Finish = u"完成"_s;
inline const QString AskQuitWizard = u"新的 Internet 账号尚未创建。\r\r您确信要退出向导吗?"_s;
inline const QString NameIntro =
    u"当您发送电子邮件时，你的姓名将出现在外发邮件的“发件人”字段。键入您想显示的名称。"_s;
inline const QString NameLabel = u"显示姓名(&D) :"_s;
inline const QString NameExample = u"例如: John Smith"_s;
inline const QString AddressIntro = u"您的电子邮件地址是别人给您发送电子邮件的地址。"_s;
inline const QString UseExistingAddress = u"我想使用一个已有的电子邮件地址(&A)"_s;
inline const QString AddressLabel = u"电子邮件地址(&E) :"_s;
inline const QString AddressExample = u"例如: xiaoli@quillmail.example"_s;
inline const QString SignUpNewAccount = u"我想申请一个新的账号(&S) :"_s;
inline const QString SignUpService = u"Tessamail"_s;
inline const QString IncomingKindLabel = u"我的邮件接收服务器是(&S)"_s;
inline const QString ServerKinds[] = {u"POP3"_s, u"IMAP"_s, u"HTTP"_s};
inline const QString ServerSuffix = u"服务器。"_s;
inline const QString IncomingLabel = u"接收邮件 (POP3, IMAP 或 HTTP) 服务器。"_s;
inline const QString OutgoingIntro = u"SMTP 服务器是您用来发送邮件的服务器。"_s;
inline const QString OutgoingLabel = u"外发邮件服务器(SMTP)(&O):"_s;
inline const QString LogonIntro = u"键入 Internet 服务提供商给您的账号名称和密码。"_s;
inline const QString LogonNameLabel = u"账号名(&A):"_s;
inline const QString PasswordLabel = u"密码(&P):"_s;
inline const QString RememberPassword = u"记住密码"_s;
inline const QString UseSpa = u"使用安全密码验证登录(SPA)(&S)"_s;
inline const QString SpaNote =
    u"如果 Internet 服务供应商要求您使用“安全密码验证 (SPA)”来访问电子邮件账号，请选择“使用安全密码验证登录”选项。"_s;
inline const QString DoneIntro = u"您已成功地输入了设置账号所需的所有信息。"_s;
inline const QString DoneHint = u"要保存这些设置，单击“完成”。"_s;

// The properties dialog.
inline const QString PropCaption = u"邮件属性"_s;
inline const QString TabGeneral = u"常规"_s;
inline const QString TabServers = u"服务器"_s;
inline const QString TabConnection = u"连接"_s;
inline const QString TabSecurity = u"安全"_s;
inline const QString TabAdvanced = u"高级"_s;
inline const QString MailAccount = u"邮件账号"_s;
inline const QString AccountLabelHint =
    u"请键入您想用来指代这些服务器的名称。例如：\"Work\" 或 \"Veltronix Mail Server\"。"_s;
inline const QString UserInformation = u"用户信息"_s;
inline const QString PropName = u"名称(&N):"_s;
inline const QString PropOrganization = u"单位(&O):"_s;
inline const QString PropAddress = u"电子邮件地址(&M):"_s;
inline const QString PropReplyAddress = u"回复地址(&Y):"_s;
inline const QString IncludeAccount = u"接收邮件或同步时包含此账号(&I)"_s;
inline const QString ServerInformation = u"服务器信息"_s;
inline const QString PropIncomingKindLabel = u"我的邮件接收服务器是(&M)"_s;
inline const QString PropIncomingKind = u" POP3"_s;  // the leading blank is part of it
inline const QString PropIncoming = u"接收邮件(POP3)(&I):"_s;
inline const QString PropOutgoing = u"外发邮件(SMTP)(&U):"_s;
inline const QString IncomingServerHeading = u"接收邮件服务器"_s;
inline const QString PropLogonName = u"账号名(&C):"_s;
inline const QString PropPassword = u"密码(&P):"_s;
inline const QString PropRememberPassword = u"记住密码(&W)"_s;
inline const QString PropUseSpa = u"使用安全密码验证登录(&S)"_s;
inline const QString OutgoingServerHeading = u"外发邮件服务器"_s;
inline const QString ServerNeedsLogon = u"我的服务器要求身份验证(&V)"_s;
inline const QString ServerSettings = u"设置(&E)..."_s;
inline const QString Ok = u"确定"_s;
inline const QString Apply = u"应用"_s;
}  // namespace accounts
// ---- Names a screen reader gives the controls without a caption ---------------
// (a control beside a caption is named by its caption).
namespace a11y {
inline const QString FolderTree = u"文件夹列表"_s;
inline const QString FolderTreeHelp = u"选择一个文件夹，右侧即显示其中的邮件。"_s;
inline const QString MessageList = u"邮件列表"_s;
inline const QString MessageListHelp = u"按 Enter 打开选中的邮件，按 Delete 删除它。"_s;
inline const QString FolderSummary = u"本地文件夹一览"_s;
inline const QString FolderSummaryHelp = u"按 Enter 打开选中的文件夹。"_s;
inline const QString Preview = u"邮件预览"_s;
inline const QString MessageBody = u"邮件正文"_s;
inline const QString Attachments = u"附件列表"_s;
inline const QString AttachmentsHelp = u"按菜单键打开附件的操作菜单。"_s;
inline const QString AccountList = u"账号列表"_s;
inline const QString AccountListHelp = u"按 Enter 查看账号属性，按 Delete 删除账号。"_s;
inline const QString AccountKinds = u"账号类别"_s;
inline const QString AccountLabel = u"账号名称"_s;
inline const QString SignUpService = u"申请新账号的服务"_s;
inline const QString Components = u"组件列表"_s;
// An editable box whose caption the toolkit does not give the field inside.
inline const QString Sender = u"发件人"_s;
inline const QString SenderHelp = u"选择用哪个账号发送这封邮件。"_s;
}  // namespace a11y

}  // namespace texts

// ==== Installed copies: the data folder and the command line ===============
namespace texts {

namespace datadir {
// At start-up when no folder can be written; %1: the folder.
inline const QString CannotWrite =
    u"无法写入数据文件夹“%1”。\r\r本次以只读方式启动：可以查看已有的邮件和账号，但所做的更改都不会保存。"_s;
// When a save is refused in that mode; %1: the folder.
inline const QString SaveRefused =
    u"数据文件夹“%1”无法写入，本次运行为只读模式，更改没有保存。"_s;
// Tooltip of the about box's version line, so a trainer can find the files;
// %1: the folder.
inline const QString AboutTip = u"数据文件夹：%1"_s;
inline const QString AboutTipReadOnly = u"数据文件夹（只读）：%1"_s;
}  // namespace datadir

// One copy of the program per data folder; %1 is always the folder.
namespace lock {
// A copy on another machine holds it; %2: that machine's name.
inline const QString HeldElsewhere =
    u"数据文件夹“%1”正在计算机“%2”上的 Quillpost Express 中打开。\r\r一个数据文件夹同一时间只能由一个程序打开，否则邮件可能丢失。请先关闭“%2”上的程序，再重新启动。"_s;
// Its lock has not been renewed for a while; %2: the machine, %3: minutes.
// Enter answers No.
inline const QString AskTakeOver =
    u"数据文件夹“%1”被计算机“%2”上的 Quillpost Express 占用，但它已经 %3 分钟没有动静，那里的程序可能已经意外退出。\r\r如果它其实还在运行，两边同时修改会丢失邮件。确定“%2”上已经没有打开这个文件夹，要在本机打开它吗？"_s;
// A copy on this machine holds it and did not answer; %2: its process number.
inline const QString HeldHereNoAnswer =
    u"数据文件夹“%1”已经在本机的另一个 Quillpost Express 中打开（进程号 %2），但它没有响应。\r\r请切换到那个窗口；如果它已经不能使用，请先结束它，再重新启动。"_s;
// No lock can be made in a folder that can be written.
inline const QString Unavailable =
    u"无法在数据文件夹“%1”中建立锁定文件，不能保证只有本程序在修改其中的邮件。\r\r本次以只读方式启动：可以查看已有的邮件和账号，但所做的更改都不会保存。"_s;
// Another machine took the folder over while this copy ran; %2: the machine.
inline const QString TakenOver =
    u"计算机“%2”上的 Quillpost Express 已经接管了数据文件夹“%1”。\r\r本程序从现在起以只读方式运行，所做的更改都不会保存。请关闭本程序。"_s;
}  // namespace lock

namespace cli {
inline const QString Description = u"Quillpost Express：不需要邮件服务器的电子邮件练习程序。"_s;
inline const QString HelpOption = u"显示本帮助，然后退出。"_s;
inline const QString VersionOption = u"显示版本号，然后退出。"_s;
inline const QString DataDirOption =
    u"把账号和邮件存放在<文件夹>中（没有时自动建立），不用默认的位置。"_s;
inline const QString DataDirValue = u"文件夹"_s;
inline const QString PrintDataDirOption = u"显示本程序使用的数据文件夹，然后退出。"_s;
inline const QString VersionLine = u"Quillpost Express %1"_s;  // %1: version
inline const QString UnexpectedArgument = u"多余的参数：%1"_s;
inline const QString TryHelp = u"可用的选项请看 quillpost --help。"_s;
inline const QString ExerciseOption =
    u"在主窗口旁边显示<练习文件>中的任务，做完的任务自动打勾。"_s;
inline const QString CheckOption =
    u"检查数据文件夹里做完了<练习文件>中的哪些任务，显示结果后退出。"
    u"退出码：0 全部完成，1 还有未完成的任务，2 练习文件不能使用，3 数据文件夹无法读取。"_s;
inline const QString ExerciseValue = u"练习文件"_s;
// Two options that ask for different things: %1 and %2 the options.
inline const QString OptionsConflict = u"选项“%1”和“%2”不能同时使用。"_s;
inline const QString ClassDirOption =
    u"把<文件夹>当作班级文件夹，与全班的机器互相收发邮件（不用管理员设置的文件夹）。"_s;
inline const QString ClassStatusOption =
    u"列出班级文件夹中每台机器、每个账号收发邮件的情况，然后退出。"_s;
// --class-status without a class folder; %1: the settings file.
inline const QString NoClassDir =
    u"没有设置班级文件夹。请用 --class-dir 指定，或由管理员在 %1 中设置。"_s;
// The command-line parser's own words, by the English it is written with.
struct ParserWord
{
    const char *english;
    const char16_t *chinese;
};
inline constexpr ParserWord ParserWords[] = {
    {"Usage: %1", u"用法：%1"},
    {"[options]", u"[选项]"},
    {"Options:", u"选项："},
    {"Arguments:", u"参数："},
    {"Unknown option '%1'.", u"未知的选项“%1”。"},
    {"Unknown options: %1.", u"未知的选项：%1。"},
    {"Missing value after '%1'.", u"选项“%1”后面缺少值。"},
    {"Unexpected value after '%1'.", u"选项“%1”后面不能带值。"},
};
}  // namespace cli

// ---- Exercises: the window beside the main window, --check, the file ----
namespace exercise {
inline const QString Caption = u"练习"_s;
inline const QString Progress = u"已完成 %1/%2"_s;  // %1 tasks done, %2 tasks
inline const QString TaskLine = u"%1. %2"_s;  // %1 the task's number, %2 its text
// What a screen reader says of a task: TaskLine after one of these.
inline const QString SaidDone = u"已完成："_s;
inline const QString SaidOpen = u"未完成："_s;
inline const QString TaskList = u"练习任务"_s;
inline const QString TaskListHelp = u"做完的任务前面有一个勾。"_s;
// A folder (or the accounts) the program cannot read just now; the box
// that said why came from the main window. %1: the folder's name.
inline const QString Unreadable = u"“%1”暂时无法读取，与它有关的任务先算作未完成。"_s;
inline const QString AccountsName = u"账号"_s;

// What --check prints per task, tab-separated: one of these, the task's
// number, its text; then a last line "done/tasks".
inline const QString CheckDone = u"完成"_s;
inline const QString CheckOpen = u"未完成"_s;
// --check's reasons on standard error. %1: the data folder.
inline const QString NoDataFolder = u"数据文件夹“%1”不存在。"_s;
inline const QString CannotCheck = u"无法检查数据文件夹“%1”。\r\r%2"_s;  // %2: why

// An exercise file that cannot be used: %1 the file, %2 AtLine or one of
// the reasons about the whole file.
inline const QString CannotUse = u"练习文件“%1”不能使用。\r\r%2"_s;
// %1 the line's number, %2 the line as written, %3 one of the reasons below.
inline const QString AtLine = u"第 %1 行“%2”：%3"_s;
// After CannotUse, when the program starts anyway.
inline const QString StartsWithout =
    u"程序照常启动，但不显示练习窗口；做过的任务照样会记在数据文件里。请把这个问题告诉老师。"_s;
inline const QString NoSuchFile = u"找不到这个文件。"_s;
inline const QString CannotRead = u"无法读取这个文件：%1"_s;  // %1: why
inline const QString EmptyFile = u"文件是空的。"_s;
inline const QString NotText =
    u"这一行有无法识别的字符。练习文件应当是 UTF-8 或 GB18030 编码的文本文件。"_s;
inline const QString ExerciseFirst = u"练习文件要以 [exercise] 开头。"_s;
inline const QString BadHeader = u"节名要写成 [名称] 的样子，“]”后面不能再有别的内容。"_s;
inline const QString UnknownSection =
    u"不认识的节名。只能写 [exercise]，以及按顺序编号的 [task1]、[task2]……"_s;
inline const QString ExerciseTwice = u"[exercise] 只能写一次。"_s;
inline const QString TaskMissing = u"缺少 [task%1]：任务要从 1 开始按顺序编号。"_s;
inline const QString TaskAgain = u"[task%1] 前面已经有了，这里应当是 [task%2]。"_s;
inline const QString NotKeyValue = u"这一行不是“名称=内容”的样子。"_s;
inline const QString ExerciseKeys = u"[exercise] 里只能写 title=（练习的标题）。"_s;
inline const QString UnknownKey =
    u"不认识“%1=”。任务里可以写：text、account、folder、from、to、cc、subject、body、attachment、count。"_s;
inline const QString KeyAgain = u"这一节里已经写过“%1=”了。"_s;
inline const QString EmptyValue = u"“%1=”后面没有内容。"_s;
inline const QString UnknownFolder =
    u"不认识的文件夹。可以写：inbox（收件箱）、outbox（发件箱）、sent（已发送邮件）、deleted（已删除邮件）、drafts（草稿）。"_s;
inline const QString BadCount = u"count= 后面要写 1 到 99999 之间的整数。"_s;
inline const QString NoTitle = u"[exercise] 里缺少 title=（练习的标题）。"_s;
inline const QString NoTasks = u"练习里还没有任务：请在 [exercise] 后面写 [task1]、[task2]……"_s;
inline const QString NoText = u"这个任务缺少 text=（学员看到的任务说明）。"_s;
inline const QString NoCondition =
    u"这个任务没有写怎样算完成：请写 account=，或者写 folder= 和要查找的内容。"_s;
inline const QString AccountAlone = u"account= 只检查账号，不能和“%1=”写在同一个任务里。"_s;
inline const QString NeedsFolder = u"“%1=”要和 folder= 一起写，说明到哪个文件夹里找。"_s;
}  // namespace exercise
// ---- Classroom: mail through a folder on the school's file share ----------
namespace classroom {
// Why the class folder or one of its files cannot be used, beside the
// reasons of the data files.
inline const QString FolderMissing = u"找不到这个文件夹，可能是网络共享没有连接。"_s;
inline const QString NotAFolder = u"这个位置上不是文件夹。"_s;
inline const QString FileMissing = u"文件不见了。"_s;
inline const QString NotAMessage = u"它不是本程序的邮件文件，或者已经损坏。"_s;
// Once per outage; %1 the class folder, %2 the reason.
inline const QString ShareAway =
    u"暂时无法使用班级文件夹“%1”：%2\r\r要发出的邮件已经保存在本机，班级文件夹恢复后，下一次收发时会自动发出。本机账号之间的邮件照常收发。"_s;
// %1: one line per file, each SkippedFile or RetriedFile, joined by CR.
inline const QString BadFiles = u"班级文件夹中有些文件无法使用：\r\r%1"_s;
inline const QString SkippedFile = u"“%1”：%2已跳过。"_s;  // %1 the file, %2 the reason
inline const QString RetriedFile = u"“%1”：%2下次收发时再试。"_s;
// The trainer's overview.
inline const QString HeadMachine = u"机器"_s;
inline const QString HeadAddress = u"账号"_s;
inline const QString HeadSent = u"已发送"_s;
inline const QString HeadReceived = u"已接收"_s;
inline const QString HeadLastRun = u"最近收发"_s;
inline const QString HeadExercise = u"练习"_s;
inline const QString HeadTasks = u"完成任务"_s;
inline const QString NeverRan = u"从未收发"_s;
inline const QString NoMembers = u"班级文件夹“%1”中还没有机器收发过邮件。"_s;
// %1 the folder, %2 the reason.
inline const QString CannotReadClassDir = u"无法读取班级文件夹“%1”：%2"_s;
}  // namespace classroom

}  // namespace texts
