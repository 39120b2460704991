#include "agent/word_lists.h"

namespace {

// In each list: English, German, French, Spanish, Italian, Portuguese, Dutch, Polish, Russian,
// Chinese, Japanese; then, where a login or a sign-up is told by them, Swedish, Norwegian, Danish,
// Finnish, Czech, Hungarian, Romanian, Turkish, Ukrainian, Korean, Indonesian, Vietnamese, Greek,
// Hebrew, Arabic, Thai.
constexpr word_list lists[] = {
    {means_user_name,
     u"username userid usrname loginname loginid userlogin loginuser accountname accountid "
     u"memberid customerid customernumber screenname _identifier_ librarycard barcode "
     u"benutzername benutzerkennung nutzername anmeldename kundennummer zugangsnummer "
     u"teilnehmernummer nomdutilisateur identifiant numeroclient nombredeusuario nombreusuario "
     u"usuario nomeutente codiceutente codicecliente nomedeusuario utilizador gebruikersnaam "
     u"inlognaam klantnummer uzytkownik identyfikator имяпользователя логин 用户名 用戶名 账号 "
     u"帐号 賬號 帳號 登录名 会员名 ユーザー名 ユーザ名 ユーザーid ユーザid ログインid "
     u"アカウント名 会員番号 会員id お客様番号 anvandarnamn brukernavn brugernavn kayttajatunnus "
     u"uzivatelskejmeno felhasznalonev numeutilizator kullaniciadi імякористувача логін 아이디 "
     u"사용자이름"},
    {means_account,
     u"user _usr login logon signin account _acct member customer _id_ _uid_ _uname nick handle "
     u"kennung konto nutzer mitglied kunde utilisateur _compte membre _cuenta socio _dni_ _rut_ "
     u"_utente _cliente _conta_ _cpf_ gebruiker _klant аккаунт учетн пользовател 账户 会员 用户 "
     u"アカウント ユーザ"},
    {means_email,
     u"email _mail_ mailadr courriel adresseelectronique _correo correoelectronico "
     u"postaelettronica почт 邮箱 電郵 郵箱 电子邮件 メール _epost_ "
     u"sahkoposti _eposta 이메일"},
    {means_phone,
     u"phone mobile _tel_ telefon handynummer _handy_ telephone _portable_ _movil_ celular "
     u"cellulare mobiel telefoon komork _msisdn_ телефон 手机 手機 电话 電話 携帯"},
    {means_password,
     u"password passwd _pwd pwd_ _pass_ _pw_ passphrase passwort kennwort motdepasse contrasena "
     u"_clave_ _senha wachtwoord haslo парол 密码 密碼 パスワード"},
    {means_current,
     u"current _old_ oldpass oldpw existing previous aktuell _alte_ _altes_ bisherig derzeitig "
     u"_actuel _ancien _actual_ antigua anterior attuale vecchia _atual antiga huidig _oude_ "
     u"obecne _aktualne dotychczas _stare_ текущ стар 当前密码 原密码 旧密码 當前密碼 現在の "
     u"旧パス"},
    {means_new,
     u"_new_ newpass newpw newuser newemail create choose desired setpassword _reg_ signup "
     u"atleast minimum characters _neu_ _neue_ _neues_ mindestens festlegen wahlen nouveau "
     u"nouvelle choisi "
     u"skapa velg valj opret luo zvol vytvor uj_ alegeti olustur belirle створ _새_ 새로운 "
     u"creer aumoins _nuev elige _crea_ crear almenos nuova nuovo scegli almeno _nova_ _novo_ "
     u"escolha _crie_ aomenos nieuw kies minimaal _nowe_ _nowy_ utworz wybierz conajmniej нов "
     u"придумайте создайте неменее 新密码 新密碼 设置密码 設置密碼 至少 位以上 新しい 新規 "
     u"文字以上"},
    {means_repeated,
     u"confirm repeat retype reenter again _verify verif repassword repasswd repwd _cpassword "
     u"_cpass_ password2 passwd2 pass2_ pwd2 wiederhol bestatig nochmal erneut confirme repet "
     u"_repit denuevo ripet conferm herhaal bevestig powtorz potwierdz повтор подтвер "
     u"确认 確認 再次 重复 再入力 もう一度 upprepa bekraft gjenta bekreft gentag bekraeft vahvista "
     u"potvrd znovu megerosit confirma repeta tekrar onayla підтверд 확인"},
    {means_one_time,
     u"_otp otp_ otpcode onetime _2fa _mfa _totp twofactor verificationcode verifycode "
     u"authcode authenticationcode authenticatorcode smscode securitycode "
     u"confirmationcode recoverycode backupcode captcha digitcode _digit_ einmal _tan_ _mtan_ "
     u"_smstan_ bestatigungscode sicherheitscode verifizierungscode codedeverif codeverif "
     u"codedesecurite codigodeverif codigodeseguridad codicediverifica codicedisicurezza "
     u"verificatiecode beveiligingscode kodweryfik kodsms jednorazow одноразов кодподтвержд "
     u"кодизсмс 验证码 驗證碼 校验码 动态码 认证码 認証コード 確認コード ワンタイム 画像認証"},
    {means_code, u"_code code_ _pin_ _token_ _kod_ _codigo_ _codice_ _auth_ _код_ コード"},
    {means_card,
     u"cardnumber cardno_ cardnum ccnum _cc_ ccname ccexp creditcard debitcard cvv _cvc _csc_ "
     u"cardholder nameoncard cardname cardcode expir expdate _exp_ _iban _bic_ accountholder "
     u"sortcode routingnumber kartennummer kreditkart prufziffer karteninhaber kontoinhaber "
     u"ablaufdatum gultigbis numerodecarte cartebancaire cryptogramme titulaire tarjeta "
     u"caducidad numerocarta cartadicredito scadenza intestatario _cartao validade "
     u"kaartnummer vervaldatum numerkarty waznosci номеркарты срокдейств держател "
     u"卡号 卡號 有效期 信用卡 银行卡 カード番号 カード名義 有効期限"},
    {means_search,
     u"search _q_ _s_ _query_ keyword _find_ suche suchen _suchbegriff recherche busca busqueda "
     u"_cerca_ ricerca pesquis zoek szukaj поиск найти искать 搜索 搜尋 查找 検索"},
    {means_detail,
     u"_host hostname _port_ _smtp _imap _db_ dbname dbuser database _ssid_ firstname lastname "
     u"fullname _fname_ _lname_ yourname givenname familyname surname forename "
     u"middlename birth _dob_ gender address street _city_ town_ _state_ zip postal postcode "
     u"_country countrycode areacode voucher coupon promo discount giftcard referral invit "
     u"vorname nachname geburt strasse hausnummer adresse _plz_ postleitzahl _ort_ gutschein "
     u"prenom _nom_ naissance codepostal _ville_ _rue_ apellido _nombre_ nacimiento direccion "
     u"codigopostal ciudad _cognome_ nascita indirizzo _citta_ sobrenome apelido nascimento "
     u"endereco _cep_ voornaam achternaam geboorte straat _imie_ nazwisko urodzenia ulica "
     u"kodpocztowy _имя_ фамилия отчество рожден адрес индекс 姓名 名字 姓氏 生日 地址 邮编 "
     u"氏名 名前 フリガナ 生年月日 住所 郵便番号"},

    {means_login,
     u"_login login_ loginform loginbox logon signin anmeld einlogg _connexion seconnecter "
     u"identifiezvous iniciarsesion iniciasesion acceder _acceso_ accedi_ _accesso_ _entrar_ "
     u"iniciarsessao _acessar_ inloggen aanmelden zaloguj logowanie _вход_ войти авторизац "
     u"welcomeback returningcustomer registeredcustomer _auth_ 登录 登錄 登入 ログイン サインイン "
     u"loggain logginn logind kirjaudu prihlas bejelentkez belepes autentific conectare "
     u"intraincont girisyap oturumac увійти вхід 로그인 "
     u"_masuk_ dangnhập σύνδεσ είσοδος התחבר כניסה تسجيلالدخول เข้าสู่ระบบ"},
    {means_sign_up,
     u"signup _register_ registerform _regform registration createaccount createanaccount "
     u"createyouraccount createyour newaccount newcustomer joinnow _join_ _enrol _reg_ _create_ "
     u"getstarted freetrial registrier kontoerstellen kontoanlegen kontoeroffnen inscription "
     u"sinscrire inscrivez creeruncompte creermoncompte registrarse _registro_ registrate "
     u"crearcuenta crearunacuenta registrati registrazione iscriviti creaaccount creaunaccount "
     u"cadastr criarconta registreren registreer accountaanmaken rejestrac zarejestruj zalozkonto "
     u"регистрац зарегистр создатьаккаунт 注册 註冊 新規登録 会員登録 アカウント作成 "
     u"creezvotrecompte ouvriruncompte claimyour activateyour skapakonto registrera opretkonto "
     u"opprettkonto registrerdeg luotili rekister registrace registrovat zaloz regisztra "
     u"inregistr creeazacont _uyeol_ kaydol kayitol hesapolustur зареєстр реєстрац 회원가입 가입 "
     u"계정만들기 vytvorit vytvorte fioklet _daftar_ buatakun dangky taotaikhoản εγγραφ "
     u"δημιουργία הרשמ הירשם إنشاءحساب حسابجديد สมัคร becomeamember openanaccount "
     u"openaccount tryitfree tryforfree forfree requestaccount"},
    {means_change,
     u"changepass changepw changeyourpass changeemail passwordchange updatepass "
     u"passwortandern kennwortandern modifierlemotdepasse changerlemotdepasse cambiarcontrasena "
     u"cambiarlacontrasena cambiapassword cambialapassword modificapassword alterarsenha "
     u"mudarsenha wachtwoordwijzigen zmienhaslo zmianahasla изменитьпароль сменапароля "
     u"сменитьпароль 修改密码 更改密码 修改密碼 パスワード変更 パスワードの変更 パスワードを変更"},
    {means_reset,
     u"setpassword setyourpassword chooseyourpass createpass createapass createyourpass "
     u"newpassword passwortfestlegen neuespasswort nouveaumotdepasse nuevacontrasena "
     u"reset forgot recover lostpass zurucksetz vergessen oublie reinitialis olvid restablec "
     u"recuper dimenticat reimpost esqueci redefinir vergeten zapomnia odzyska восстанов забыли "
     u"сброс 忘记 忘記 找回 重置 忘れ 再設定"},
    {means_mailing,
     u"newsletter subscri mailinglist waitlist notifyme abonnieren abonnezvous sabonner "
     u"suscri nieuwsbrief рассылк подпис 订阅 訂閱 メルマガ"},
    {means_checkout,
     u"checkout _payment_ billing shippingaddr deliveryaddr _kasse_ bezahl rechnungsadr "
     u"lieferadr zahlung paiement adressedelivraison _pago_ direcciondeenvio pagamento "
     u"afrekenen betaling bestelling zamowieni platnosc оплат заказ 结账 支付 付款 お支払 ご注文"},
};

}  // namespace

std::span<const word_list> word_lists() { return lists; }
