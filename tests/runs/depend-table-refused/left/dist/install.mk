# <141 generated head 1>
# <142 generated head 2>
#
# <143 generated head 3> @(#)morvane	1.20	95/06/08 

#
# This file was generated automatically by 'morvane'.

.SILENT:

CC		= /usr/bin/cc
INST_FILES	= morvane.rsc morvane.SunOS4 morvane.SunOS5 Makefile
TAR_PATH	= @DIR@/dist


install:        products

products: depot app base cache

#############################################################################

depot: depot-message depot-new depot-dat-file \
		depot-succeeded


depot-message:
	echo "*******************************************************************************"
	echo " "
	echo "***  installation of 'Depot'  ***"
	echo " "



depot-new:	depot-tar depot-owner \
		depot-group \
		depot-inst-files depot-make



depot-tar: depot.tar
	echo "** extracting $(TAR_PATH)/depot.tar to @DIR@/opt/depot"
	cd @DIR@/opt/depot; tar -xvpf $(TAR_PATH)/depot.tar
	cd @DIR@/opt/depot; rm -f $(TAR_PATH)/depot.tar-contence


depot.tar-contence: depot.tar
	echo "** getting contence of $(TAR_PATH)/depot.tar"
	tar -tf $(TAR_PATH)/depot.tar | cut -f1 -d" " > $(TAR_PATH)/depot.tar-contence


depot-inst-files: depot-inst-dir
	echo "** copying installation stuff to @DIR@/opt/depot"
	diff ./morvane.rsc @DIR@/opt/depot/morvane.rsc > /dev/null 2>&1 || \
	(cp -p ./morvane.rsc @DIR@/opt/depot && \
	chown root @DIR@/opt/depot/morvane.rsc && \
	chgrp root @DIR@/opt/depot/morvane.rsc  )
	diff ./morvane.SunOS4 @DIR@/opt/depot/morvane.SunOS4 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS4 @DIR@/opt/depot && \
	chown root @DIR@/opt/depot/morvane.SunOS4 && \
	chgrp root @DIR@/opt/depot/morvane.SunOS4  )
	diff ./morvane.SunOS5 @DIR@/opt/depot/morvane.SunOS5 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS5 @DIR@/opt/depot && \
	chown root @DIR@/opt/depot/morvane.SunOS5 && \
	chgrp root @DIR@/opt/depot/morvane.SunOS5  )
	diff ./Makefile @DIR@/opt/depot/Makefile > /dev/null 2>&1 || \
	(cp -p ./Makefile @DIR@/opt/depot && \
	chown root @DIR@/opt/depot/Makefile && \
	chgrp root @DIR@/opt/depot/Makefile  )
	diff ./depot.descr @DIR@/opt/depot/install/depot.descr > /dev/null 2>&1 || \
	(cp -p ./depot.descr @DIR@/opt/depot/install && \
	chown root @DIR@/opt/depot/install/depot.descr && \
	chgrp root @DIR@/opt/depot/install/depot.descr  )


depot-dat-file: depot-inst-dir
	diff ./depot.dat @DIR@/opt/depot/install/depot.dat > /dev/null 2>&1 || \
	(cp -p ./depot.dat @DIR@/opt/depot/install && \
	chown root @DIR@/opt/depot/install/depot.dat && \
	chgrp root @DIR@/opt/depot/install/depot.dat  )


depot-inst-dir:
	if test -d @DIR@/opt/depot/install; \
	then \
		:;\
	else \
		echo "** creating 'install' directory in '@DIR@/opt/depot'"; \
		mkdir @DIR@/opt/depot/install; \
		chown root @DIR@/opt/depot/install; \
		chgrp root @DIR@/opt/depot/install; \
	fi

depot-make @DIR@/opt/depot/install/depot.make:
	if test -f @DIR@/opt/depot/install/Makefile; then \
		echo "** preparing product specific Makefile '@DIR@/opt/depot/install/depot.make'"; \
		echo "include depot.dat" > @DIR@/opt/depot/install/depot.make; \
		cat @DIR@/opt/depot/install/Makefile >> @DIR@/opt/depot/install/depot.make; \
		rm -f @DIR@/opt/depot/install/Makefile; \
		chown root @DIR@/opt/depot/install/depot.make; \
		chgrp root @DIR@/opt/depot/install/depot.make; \
	else \
		if test "$@" != "depot-make"; then \
			echo "Makefile '@DIR@/opt/depot/install/Makefile' missing, cannot install product specific targets."; \
			exit 1; \
		fi; \
	fi


depot-owner: depot.tar-contence
	echo "** changing owner to 'root' inside the tree '@DIR@/opt/depot'"
	cd @DIR@/opt/depot; chown root `cat $(TAR_PATH)/depot.tar-contence`

depot-group: depot.tar-contence
	echo "** changing group to 'root' inside the tree '@DIR@/opt/depot'"
	cd @DIR@/opt/depot; chgrp root `cat $(TAR_PATH)/depot.tar-contence`



depot-succeeded:
	echo " "
	echo "		***  succeeded  ***"
	echo " "


#############################################################################

app: app-message app-new app-dat-file \
		app-program  \
		app-succeeded


app-message:
	echo "*******************************************************************************"
	echo " "
	echo "***  installation of 'App'  ***"
	echo " "



app-new:	app-tar app-owner \
		app-group \
		app-inst-files app-make



app-tar: app.tar
	echo "** extracting $(TAR_PATH)/app.tar to @DIR@/opt/app"
	cd @DIR@/opt/app; tar -xvpf $(TAR_PATH)/app.tar
	cd @DIR@/opt/app; rm -f $(TAR_PATH)/app.tar-contence


app.tar-contence: app.tar
	echo "** getting contence of $(TAR_PATH)/app.tar"
	tar -tf $(TAR_PATH)/app.tar | cut -f1 -d" " > $(TAR_PATH)/app.tar-contence


app-inst-files: app-inst-dir
	echo "** copying installation stuff to @DIR@/opt/app"
	diff ./morvane.rsc @DIR@/opt/app/morvane.rsc > /dev/null 2>&1 || \
	(cp -p ./morvane.rsc @DIR@/opt/app && \
	chown root @DIR@/opt/app/morvane.rsc && \
	chgrp root @DIR@/opt/app/morvane.rsc  )
	diff ./morvane.SunOS4 @DIR@/opt/app/morvane.SunOS4 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS4 @DIR@/opt/app && \
	chown root @DIR@/opt/app/morvane.SunOS4 && \
	chgrp root @DIR@/opt/app/morvane.SunOS4  )
	diff ./morvane.SunOS5 @DIR@/opt/app/morvane.SunOS5 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS5 @DIR@/opt/app && \
	chown root @DIR@/opt/app/morvane.SunOS5 && \
	chgrp root @DIR@/opt/app/morvane.SunOS5  )
	diff ./Makefile @DIR@/opt/app/Makefile > /dev/null 2>&1 || \
	(cp -p ./Makefile @DIR@/opt/app && \
	chown root @DIR@/opt/app/Makefile && \
	chgrp root @DIR@/opt/app/Makefile  )
	diff ./app.descr @DIR@/opt/app/install/app.descr > /dev/null 2>&1 || \
	(cp -p ./app.descr @DIR@/opt/app/install && \
	chown root @DIR@/opt/app/install/app.descr && \
	chgrp root @DIR@/opt/app/install/app.descr  )


app-dat-file: app-inst-dir
	diff ./app.dat @DIR@/opt/app/install/app.dat > /dev/null 2>&1 || \
	(cp -p ./app.dat @DIR@/opt/app/install && \
	chown root @DIR@/opt/app/install/app.dat && \
	chgrp root @DIR@/opt/app/install/app.dat  )


app-inst-dir:
	if test -d @DIR@/opt/app/install; \
	then \
		:;\
	else \
		echo "** creating 'install' directory in '@DIR@/opt/app'"; \
		mkdir @DIR@/opt/app/install; \
		chown root @DIR@/opt/app/install; \
		chgrp root @DIR@/opt/app/install; \
	fi

app-make @DIR@/opt/app/install/app.make:
	if test -f @DIR@/opt/app/install/Makefile; then \
		echo "** preparing product specific Makefile '@DIR@/opt/app/install/app.make'"; \
		echo "include app.dat" > @DIR@/opt/app/install/app.make; \
		cat @DIR@/opt/app/install/Makefile >> @DIR@/opt/app/install/app.make; \
		rm -f @DIR@/opt/app/install/Makefile; \
		chown root @DIR@/opt/app/install/app.make; \
		chgrp root @DIR@/opt/app/install/app.make; \
	else \
		if test "$@" != "app-make"; then \
			echo "Makefile '@DIR@/opt/app/install/Makefile' missing, cannot install product specific targets."; \
			exit 1; \
		fi; \
	fi


app-owner: app.tar-contence
	echo "** changing owner to 'root' inside the tree '@DIR@/opt/app'"
	cd @DIR@/opt/app; chown root `cat $(TAR_PATH)/app.tar-contence`

app-group: app.tar-contence
	echo "** changing group to 'root' inside the tree '@DIR@/opt/app'"
	cd @DIR@/opt/app; chgrp root `cat $(TAR_PATH)/app.tar-contence`



app-program: @DIR@/opt/app/install/app.make
	echo "** making 'program' for 'App'"
	cd @DIR@/opt/app/install; $(MAKE) -f app.make program

app-succeeded:
	echo " "
	echo "		***  succeeded  ***"
	echo " "


#############################################################################

base: base-message base-new base-dat-file \
		base-succeeded


base-message:
	echo "*******************************************************************************"
	echo " "
	echo "***  installation of 'Base'  ***"
	echo " "



base-new:	base-tar base-owner \
		base-group \
		base-inst-files base-make



base-tar: base.tar
	echo "** extracting $(TAR_PATH)/base.tar to @DIR@/opt/base"
	cd @DIR@/opt/base; tar -xvpf $(TAR_PATH)/base.tar
	cd @DIR@/opt/base; rm -f $(TAR_PATH)/base.tar-contence


base.tar-contence: base.tar
	echo "** getting contence of $(TAR_PATH)/base.tar"
	tar -tf $(TAR_PATH)/base.tar | cut -f1 -d" " > $(TAR_PATH)/base.tar-contence


base-inst-files: base-inst-dir
	echo "** copying installation stuff to @DIR@/opt/base"
	diff ./morvane.rsc @DIR@/opt/base/morvane.rsc > /dev/null 2>&1 || \
	(cp -p ./morvane.rsc @DIR@/opt/base && \
	chown root @DIR@/opt/base/morvane.rsc && \
	chgrp root @DIR@/opt/base/morvane.rsc  )
	diff ./morvane.SunOS4 @DIR@/opt/base/morvane.SunOS4 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS4 @DIR@/opt/base && \
	chown root @DIR@/opt/base/morvane.SunOS4 && \
	chgrp root @DIR@/opt/base/morvane.SunOS4  )
	diff ./morvane.SunOS5 @DIR@/opt/base/morvane.SunOS5 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS5 @DIR@/opt/base && \
	chown root @DIR@/opt/base/morvane.SunOS5 && \
	chgrp root @DIR@/opt/base/morvane.SunOS5  )
	diff ./Makefile @DIR@/opt/base/Makefile > /dev/null 2>&1 || \
	(cp -p ./Makefile @DIR@/opt/base && \
	chown root @DIR@/opt/base/Makefile && \
	chgrp root @DIR@/opt/base/Makefile  )
	diff ./base.descr @DIR@/opt/base/install/base.descr > /dev/null 2>&1 || \
	(cp -p ./base.descr @DIR@/opt/base/install && \
	chown root @DIR@/opt/base/install/base.descr && \
	chgrp root @DIR@/opt/base/install/base.descr  )


base-dat-file: base-inst-dir
	diff ./base.dat @DIR@/opt/base/install/base.dat > /dev/null 2>&1 || \
	(cp -p ./base.dat @DIR@/opt/base/install && \
	chown root @DIR@/opt/base/install/base.dat && \
	chgrp root @DIR@/opt/base/install/base.dat  )


base-inst-dir:
	if test -d @DIR@/opt/base/install; \
	then \
		:;\
	else \
		echo "** creating 'install' directory in '@DIR@/opt/base'"; \
		mkdir @DIR@/opt/base/install; \
		chown root @DIR@/opt/base/install; \
		chgrp root @DIR@/opt/base/install; \
	fi

base-make @DIR@/opt/base/install/base.make:
	if test -f @DIR@/opt/base/install/Makefile; then \
		echo "** preparing product specific Makefile '@DIR@/opt/base/install/base.make'"; \
		echo "include base.dat" > @DIR@/opt/base/install/base.make; \
		cat @DIR@/opt/base/install/Makefile >> @DIR@/opt/base/install/base.make; \
		rm -f @DIR@/opt/base/install/Makefile; \
		chown root @DIR@/opt/base/install/base.make; \
		chgrp root @DIR@/opt/base/install/base.make; \
	else \
		if test "$@" != "base-make"; then \
			echo "Makefile '@DIR@/opt/base/install/Makefile' missing, cannot install product specific targets."; \
			exit 1; \
		fi; \
	fi


base-owner: base.tar-contence
	echo "** changing owner to 'root' inside the tree '@DIR@/opt/base'"
	cd @DIR@/opt/base; chown root `cat $(TAR_PATH)/base.tar-contence`

base-group: base.tar-contence
	echo "** changing group to 'root' inside the tree '@DIR@/opt/base'"
	cd @DIR@/opt/base; chgrp root `cat $(TAR_PATH)/base.tar-contence`



base-succeeded:
	echo " "
	echo "		***  succeeded  ***"
	echo " "


#############################################################################

cache: cache-message cache-new cache-dat-file \
		cache-succeeded


cache-message:
	echo "*******************************************************************************"
	echo " "
	echo "***  installation of 'Cache'  ***"
	echo " "



cache-new:	cache-tar cache-owner \
		cache-group \
		cache-inst-files cache-make



cache-tar: cache.tar
	echo "** extracting $(TAR_PATH)/cache.tar to @DIR@/opt/cache"
	cd @DIR@/opt/cache; tar -xvpf $(TAR_PATH)/cache.tar
	cd @DIR@/opt/cache; rm -f $(TAR_PATH)/cache.tar-contence


cache.tar-contence: cache.tar
	echo "** getting contence of $(TAR_PATH)/cache.tar"
	tar -tf $(TAR_PATH)/cache.tar | cut -f1 -d" " > $(TAR_PATH)/cache.tar-contence


cache-inst-files: cache-inst-dir
	echo "** copying installation stuff to @DIR@/opt/cache"
	diff ./morvane.rsc @DIR@/opt/cache/morvane.rsc > /dev/null 2>&1 || \
	(cp -p ./morvane.rsc @DIR@/opt/cache && \
	chown root @DIR@/opt/cache/morvane.rsc && \
	chgrp root @DIR@/opt/cache/morvane.rsc  )
	diff ./morvane.SunOS4 @DIR@/opt/cache/morvane.SunOS4 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS4 @DIR@/opt/cache && \
	chown root @DIR@/opt/cache/morvane.SunOS4 && \
	chgrp root @DIR@/opt/cache/morvane.SunOS4  )
	diff ./morvane.SunOS5 @DIR@/opt/cache/morvane.SunOS5 > /dev/null 2>&1 || \
	(cp -p ./morvane.SunOS5 @DIR@/opt/cache && \
	chown root @DIR@/opt/cache/morvane.SunOS5 && \
	chgrp root @DIR@/opt/cache/morvane.SunOS5  )
	diff ./Makefile @DIR@/opt/cache/Makefile > /dev/null 2>&1 || \
	(cp -p ./Makefile @DIR@/opt/cache && \
	chown root @DIR@/opt/cache/Makefile && \
	chgrp root @DIR@/opt/cache/Makefile  )
	diff ./cache.descr @DIR@/opt/cache/install/cache.descr > /dev/null 2>&1 || \
	(cp -p ./cache.descr @DIR@/opt/cache/install && \
	chown root @DIR@/opt/cache/install/cache.descr && \
	chgrp root @DIR@/opt/cache/install/cache.descr  )


cache-dat-file: cache-inst-dir
	diff ./cache.dat @DIR@/opt/cache/install/cache.dat > /dev/null 2>&1 || \
	(cp -p ./cache.dat @DIR@/opt/cache/install && \
	chown root @DIR@/opt/cache/install/cache.dat && \
	chgrp root @DIR@/opt/cache/install/cache.dat  )


cache-inst-dir:
	if test -d @DIR@/opt/cache/install; \
	then \
		:;\
	else \
		echo "** creating 'install' directory in '@DIR@/opt/cache'"; \
		mkdir @DIR@/opt/cache/install; \
		chown root @DIR@/opt/cache/install; \
		chgrp root @DIR@/opt/cache/install; \
	fi

cache-make @DIR@/opt/cache/install/cache.make:
	if test -f @DIR@/opt/cache/install/Makefile; then \
		echo "** preparing product specific Makefile '@DIR@/opt/cache/install/cache.make'"; \
		echo "include cache.dat" > @DIR@/opt/cache/install/cache.make; \
		cat @DIR@/opt/cache/install/Makefile >> @DIR@/opt/cache/install/cache.make; \
		rm -f @DIR@/opt/cache/install/Makefile; \
		chown root @DIR@/opt/cache/install/cache.make; \
		chgrp root @DIR@/opt/cache/install/cache.make; \
	else \
		if test "$@" != "cache-make"; then \
			echo "Makefile '@DIR@/opt/cache/install/Makefile' missing, cannot install product specific targets."; \
			exit 1; \
		fi; \
	fi


cache-owner: cache.tar-contence
	echo "** changing owner to 'root' inside the tree '@DIR@/opt/cache'"
	cd @DIR@/opt/cache; chown root `cat $(TAR_PATH)/cache.tar-contence`

cache-group: cache.tar-contence
	echo "** changing group to 'root' inside the tree '@DIR@/opt/cache'"
	cd @DIR@/opt/cache; chgrp root `cat $(TAR_PATH)/cache.tar-contence`



cache-succeeded:
	echo " "
	echo "		***  succeeded  ***"
	echo " "


#############################################################################

.c:
	echo "** compiling $@"
	$(CC) $(OPTS) -o ./$@ ./$*.c


