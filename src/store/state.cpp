#include "state.h"

namespace Main {
qint16 gnMailNum = 0;
qint16 gnMailBoxNum = 0;
qint16 gnCurrentMailNo = 0;
qint16 sendfolder = 0;
QString strID;
qint16 UnReadNum = 0;
qint16 DelUnReadNum = 0;
qint16 gnSendReceiveType = 0;
bool StopFlag = false;
qint16 gnCurrentMailBoxNo = 0;
QString gnCurrentText;
bool gbModified = false;
QString StrName;
QString StrAddress;
QString StrPOP3;
QString StrSMTP;
QString StrUserName;
QString StrUserPassword;
QString StrPa1;
QString StrPa2;
QString StrPa31;
QString StrPa32;
QString StrPa41;
QString StrPa42;
qint16 ComposeMode = 0;

void resetState()
{
    gnMailNum = gnMailBoxNum = gnCurrentMailNo = sendfolder = 0;
    UnReadNum = DelUnReadNum = gnSendReceiveType = gnCurrentMailBoxNo = 0;
    StopFlag = gbModified = false;
    for (QString *s : {&strID, &gnCurrentText, &StrName, &StrAddress, &StrPOP3, &StrSMTP,
                       &StrUserName, &StrUserPassword, &StrPa1, &StrPa2, &StrPa31, &StrPa32,
                       &StrPa41, &StrPa42})
        s->clear();
    ComposeMode = 0;
}
}  // namespace Main
