// Lines that the user edits, by libedit.

#include "TrafficPolicy/platform/wendo/Interrupt.h"
#include "cli/Completion.h"
#include "cli/LineInput.h"
#include "sources/StateFolder.h"

#include <histedit.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <cwchar>
#include <exception>
#include <new>
#include <string_view>

namespace tpcli {

namespace {

constexpr int historySize = 1000;

char prompt[] = "tpcli> ";

volatile std::sig_atomic_t resized = 0;   // the terminal has another size
volatile std::sig_atomic_t continued = 0; // after a stop, in which others set the terminal

// The number of characters, which is what libedit deletes by.
int characters( std::string_view text ) {
   std::mbstate_t state{};
   char const * at = text.data();
   char const * const end = at + text.size();
   int count = 0;
   for ( ; at < end; ++count ) {
      size_t const length = std::mbrlen( at, static_cast< size_t >( end - at ), &state );
      at += length == 0 || length > text.size() ? 1 : length;
   }
   return count;
}

class Editor : public LineInput {
public:
   explicit Editor( Workspace & workspace )
      : workspace_( workspace )
      , edit_( ::el_init( "tpcli", stdin, stdout, stderr ) )
      , history_( ::history_init() ) {
      if ( !edit_ || !history_ ) {
         throw std::bad_alloc();
      }
      setUp();
      loadHistory();
   }
   ~Editor() override {
      ::history_end( history_ );
      ::el_end( edit_ );
   }

   std::optional< std::string > next() override {
      for ( ;; ) {
         // Before the prompt: what is typed as soon as it is there must not be taken otherwise.
         ::el_set( edit_, EL_PREP_TERM, 1 );
         int length = 0;
         char const * const line = ::el_gets( edit_, &length );
         if ( line && length > 0 ) {
            std::string text( line, static_cast< size_t >( length ) );
            text.erase( text.find_last_not_of( '\n' ) + 1 );
            remember( text );
            return text;
         }
         std::fputs( "\n", stdout );
         std::fflush( stdout );
         if ( !wendo::interrupt::requested ) {
            return std::nullopt;
         }
         wendo::interrupt::requested = false; // the line is discarded
      }
   }

private:
   void setUp() {
      std::setlocale( LC_CTYPE, "" );
      ::el_set( edit_, EL_CLIENTDATA, this );
      ::el_set(
         edit_, EL_PROMPT, +[]( EditLine * ) { return prompt; } );
      ::el_set( edit_, EL_EDITOR, "emacs" );
      ::el_set( edit_, EL_HIST, ::history, history_ );
      ::el_set( edit_, EL_GETCFN, &Editor::readCharacter );
      ::el_set( edit_, EL_ADDFN, "tpcli-complete", "complete the word", &Editor::onTab );
      ::el_set( edit_, EL_ADDFN, "tpcli-help", "what may follow", &Editor::onQuestionMark );
      ::el_source( edit_, nullptr );
      ::el_set( edit_, EL_BIND, "^I", "tpcli-complete", nullptr );
      ::el_set( edit_, EL_BIND, "?", "tpcli-help", nullptr );
      // Without SA_RESTART, so that the wait for a key notices.
      struct sigaction action {};
      action.sa_handler = []( int ) { resized = 1; };
      ::sigaction( SIGWINCH, &action, nullptr );
      action.sa_handler = []( int ) { continued = 1; };
      ::sigaction( SIGCONT, &action, nullptr );
   }

   void loadHistory() {
      std::string const folder = makeStateFolder();
      historyFile_ = folder.empty() ? "" : folder + "/history";
      load( history_ );
   }

   // Kept from line to line, with what others have added: a program that is killed loses none. A
   // history that cannot be written is no reason to trouble the user.
   void remember( std::string const & line ) {
      if ( line.find_first_not_of( " \t" ) == line.npos ) {
         return;
      }
      HistEvent event{};
      ::history( history_, &event, H_ENTER, line.c_str() );
      History * const kept = historyFile_.empty() ? nullptr : ::history_init();
      if ( kept ) {
         load( kept );
         ::history( kept, &event, H_ENTER, line.c_str() );
         ::history( kept, &event, H_SAVE, historyFile_.c_str() );
         ::history_end( kept );
      }
   }

   void load( History * history ) const {
      HistEvent event{};
      ::history( history, &event, H_SETSIZE, historySize );
      ::history( history, &event, H_SETUNIQUE, 1 );
      if ( !historyFile_.empty() ) {
         ::history( history, &event, H_LOAD, historyFile_.c_str() );
      }
   }

   static Editor & of( EditLine * edit ) {
      void * self = nullptr;
      ::el_get( edit, EL_CLIENTDATA, &self );
      return *static_cast< Editor * >( self );
   }

   // Returns 1; 0 at the end of the input, -1 when an interrupt ends the line.
   static int readCharacter( EditLine * edit, wchar_t * result ) {
      std::mbstate_t state{};
      for ( ;; ) {
         if ( !of( edit ).awaitKey() ) {
            return -1;
         }
         char byte = 0;
         ssize_t const got = ::read( STDIN_FILENO, &byte, 1 );
         if ( got < 0 && errno == EINTR ) {
            continue;
         }
         if ( got <= 0 ) {
            return static_cast< int >( got );
         }
         size_t const length = std::mbrtowc( result, &byte, 1, &state );
         if ( length == static_cast< size_t >( -1 ) ) {
            state = {};
         } else if ( length != static_cast< size_t >( -2 ) ) {
            return 1;
         }
      }
   }

   // Signals are let through only while it waits, so that none is missed. False at an interrupt.
   bool awaitKey() {
      sigset_t mine{};
      sigset_t before{};
      for ( int const signal : { SIGINT, SIGWINCH, SIGCONT } ) {
         ::sigaddset( &mine, signal );
      }
      ::sigprocmask( SIG_BLOCK, &mine, &before );
      int ready = 0;
      while ( ready <= 0 && !wendo::interrupt::requested ) {
         if ( resized ) {
            resized = 0;
            ::el_resize( edit_ );
         }
         if ( continued ) {
            continued = 0;
            ::el_set( edit_, EL_PREP_TERM, 1 );
            ::el_set( edit_, EL_REFRESH );
         }
         pollfd input{ .fd = STDIN_FILENO, .events = POLLIN, .revents = 0 };
         ready = ::ppoll( &input, 1, nullptr, &before );
      }
      ::sigprocmask( SIG_SETMASK, &before, nullptr );
      return !wendo::interrupt::requested;
   }

   // Nothing may be thrown through libedit.
   template< unsigned char ( Editor::*action )() >
   static unsigned char guarded( EditLine * edit ) {
      try {
         return ( of( edit ).*action )();
      } catch ( std::exception const & ) {
         return CC_REFRESH_BEEP;
      }
   }
   static unsigned char onTab( EditLine * edit, int ) {
      return guarded< &Editor::completeWord >( edit );
   }
   static unsigned char onQuestionMark( EditLine * edit, int ) {
      return guarded< &Editor::help >( edit );
   }

   std::string_view lineToCursor() const {
      LineInfo const * const info = ::el_line( edit_ );
      return { info->buffer, static_cast< size_t >( info->cursor - info->buffer ) };
   }

   unsigned char show( std::string const & text ) const {
      std::fputs( ( "\n" + text ).c_str(), stdout );
      std::fflush( stdout );
      return CC_REDISPLAY;
   }

   unsigned char help() {
      std::string const line( lineToCursor() );
      CommandText const text = splitLine( line );
      if ( text.openQuote || line.ends_with( '\\' ) ) {
         ::el_insertstr( edit_, "?" );
         return CC_REFRESH;
      }
      return show( describe( complete( text, true, workspace_ ) ) );
   }

   unsigned char completeWord() {
      std::string const line( lineToCursor() );
      Completions const found = complete( splitLine( line ), true, workspace_ );
      if ( found.words.empty() ) {
         return CC_REFRESH_BEEP;
      }
      bool const only = found.words.size() == 1;
      std::string const word = quotedWord( found.common );
      // The begin of a name that needs quotes is no word by itself.
      if ( only || ( word == found.common && found.common.size() > found.begin.size() ) ) {
         std::string_view const typed = std::string_view( line ).substr( found.beginsAt );
         ::el_deletestr( edit_, characters( typed ) );
         ::el_insertstr( edit_, ( word + ( only ? " " : "" ) ).c_str() );
         return CC_REFRESH;
      }
      return show( describe( found ) );
   }

   Workspace & workspace_;
   EditLine * edit_;
   History * history_;
   std::string historyFile_; // empty: none
};

} // namespace

std::unique_ptr< LineInput > editedLines( Workspace & workspace ) {
   return std::make_unique< Editor >( workspace );
}

} // namespace tpcli
